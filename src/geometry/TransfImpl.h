#pragma once

#include "geometry/HPDouble.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/Vector.h"

namespace zorvex_api
{

/// The plain fields of a Transf. The high-precision access does nothing here.
class TransfImpl : public Allocator
{
public:
    TransfImpl();
    virtual ~TransfImpl();

    /// Resets to the identity.
    virtual void Initialise();

    // Nine entries row by row, three entries, 16 entries row by row.
    virtual void SetHPRotation(const HPDouble* rotation);
    virtual void GetHPRotation(HPDouble* rotation) const;
    virtual void SetHPTranslation(const HPDouble* translation);
    virtual void GetHPTranslation(HPDouble* translation) const;
    virtual void SetHPScale(const HPDouble& scale);
    virtual HPDouble GetHPScale() const;
    virtual void GetHPMatrix(HPDouble* matrix) const;
    virtual void SetHPMatrix(const HPDouble* matrix);

    bool HasPerspective() const;

    double m_rotation[3][3];  // first index the row
    Vector m_translation;
    double m_scale;  // the lower right entry
    Vector m_perspective;
};

/// Adds the high-precision half, which the perspective hasn't.
class HPTransfImpl : public TransfImpl
{
public:
    HPTransfImpl();
    /// The high-precision half from the plain fields.
    explicit HPTransfImpl(const TransfImpl& plain);

    void Initialise() override;
    void SetHPRotation(const HPDouble* rotation) override;
    void GetHPRotation(HPDouble* rotation) const override;
    void SetHPTranslation(const HPDouble* translation) override;
    void GetHPTranslation(HPDouble* translation) const override;
    void SetHPScale(const HPDouble& scale) override;
    HPDouble GetHPScale() const override;
    void GetHPMatrix(HPDouble* matrix) const override;
    /// Stores the high parts into the plain fields as well; the low parts of the perspective row
    /// are dropped.
    void SetHPMatrix(const HPDouble* matrix) override;

private:
    HPDouble m_hpRotation[9];
    HPDouble m_hpTranslation[3];
    HPDouble m_hpScale;
};

}  // namespace zorvex_api
