#include "geometry/TransfImpl.h"

namespace zorvex_api
{

TransfImpl::TransfImpl()
    : m_rotation{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}, m_scale(1.0)
{
}

TransfImpl::~TransfImpl() = default;

void TransfImpl::Initialise()
{
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            m_rotation[row][column] = row == column ? 1.0 : 0.0;
        }
        m_translation[row] = 0.0;
        m_perspective[row] = 0.0;
    }
    m_scale = 1.0;
}

void TransfImpl::SetHPRotation(const HPDouble*) {}

void TransfImpl::GetHPRotation(HPDouble*) const {}

void TransfImpl::SetHPTranslation(const HPDouble*) {}

void TransfImpl::GetHPTranslation(HPDouble*) const {}

void TransfImpl::SetHPScale(const HPDouble&) {}

HPDouble TransfImpl::GetHPScale() const
{
    return HPDouble();
}

void TransfImpl::GetHPMatrix(HPDouble*) const {}

void TransfImpl::SetHPMatrix(const HPDouble*) {}

bool TransfImpl::HasPerspective() const
{
    return m_perspective.x() != 0.0 || m_perspective.y() != 0.0 || m_perspective.z() != 0.0;
}

HPTransfImpl::HPTransfImpl() : HPTransfImpl(TransfImpl()) {}

HPTransfImpl::HPTransfImpl(const TransfImpl& plain)
    : TransfImpl(plain), m_hpScale{plain.m_scale, 0.0}
{
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            m_hpRotation[3 * row + column] = {plain.m_rotation[row][column], 0.0};
        }
        m_hpTranslation[row] = {plain.m_translation.Component(row), 0.0};
    }
}

void HPTransfImpl::Initialise()
{
    TransfImpl::Initialise();
    for (int i = 0; i < 9; ++i)
    {
        m_hpRotation[i] = {i % 4 == 0 ? 1.0 : 0.0, 0.0};
    }
    for (HPDouble& component : m_hpTranslation)
    {
        component = HPDouble();
    }
    m_hpScale = {1.0, 0.0};
}

void HPTransfImpl::SetHPRotation(const HPDouble* rotation)
{
    for (int i = 0; i < 9; ++i)
    {
        m_hpRotation[i] = rotation[i];
    }
}

void HPTransfImpl::GetHPRotation(HPDouble* rotation) const
{
    for (int i = 0; i < 9; ++i)
    {
        rotation[i] = m_hpRotation[i];
    }
}

void HPTransfImpl::SetHPTranslation(const HPDouble* translation)
{
    for (int i = 0; i < 3; ++i)
    {
        m_hpTranslation[i] = translation[i];
    }
}

void HPTransfImpl::GetHPTranslation(HPDouble* translation) const
{
    for (int i = 0; i < 3; ++i)
    {
        translation[i] = m_hpTranslation[i];
    }
}

void HPTransfImpl::SetHPScale(const HPDouble& scale)
{
    m_hpScale = scale;
}

HPDouble HPTransfImpl::GetHPScale() const
{
    return m_hpScale;
}

void HPTransfImpl::GetHPMatrix(HPDouble* matrix) const
{
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            matrix[4 * row + column] = m_hpRotation[3 * row + column];
        }
        matrix[4 * row + 3] = m_hpTranslation[row];
        matrix[12 + row] = {m_perspective.Component(row), 0.0};
    }
    matrix[15] = m_hpScale;
}

void HPTransfImpl::SetHPMatrix(const HPDouble* matrix)
{
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            const HPDouble& entry = matrix[4 * row + column];
            m_rotation[row][column] = entry.hi;
            m_hpRotation[3 * row + column] = entry;
        }
        m_hpTranslation[row] = matrix[4 * row + 3];
        m_translation[row] = matrix[4 * row + 3].hi;
        m_perspective[row] = matrix[12 + row].hi;
    }
    m_scale = matrix[15].hi;
    m_hpScale = matrix[15];
}

}  // namespace zorvex_api
