#include "zorvex60/Material.h"

namespace zorvex60
{

namespace
{

constexpr double kTolerance = 1e-5;
constexpr double kSpecular[] = {1.0, 1.0, 1.0};
constexpr double kEmissive[] = {0.0, 0.0, 0.0};
constexpr double kShininess = 80.0;
constexpr double kAlpha = 1.0;

using Getter = Result (Material::*)(double*) const;
using Setter = Result (Material::*)(const double*);

// The ends belong to it as they are written: 1.00001 is near 1, though their difference is rounded.
bool IsNear(double value, double expected)
{
    return value >= expected - kTolerance && value <= expected + kTolerance;
}

bool HasColour(const Material& material, Getter get, const double* expected)
{
    double values[3] = {};
    return (material.*get)(values).Ok() && IsNear(values[0], expected[0]) &&
           IsNear(values[1], expected[1]) && IsNear(values[2], expected[2]);
}

void CopyColour(const Material& from, Getter get, Material& to, Setter set)
{
    double values[3] = {};
    if ((from.*get)(values).Ok())
    {
        (to.*set)(values);
    }
}

}  // namespace

void Material::Initialise(const double* colour)
{
    SetAmbient(colour);
    SetDiffuse(colour);
    SetSpecular(kSpecular);
    SetEmissive(kEmissive);
    SetShininess(kShininess);
    SetAlpha(kAlpha);
}

void Material::Initialise(const Material& other)
{
    CopyColour(other, &Material::GetAmbient, *this, &Material::SetAmbient);
    CopyColour(other, &Material::GetDiffuse, *this, &Material::SetDiffuse);
    CopyColour(other, &Material::GetSpecular, *this, &Material::SetSpecular);
    CopyColour(other, &Material::GetEmissive, *this, &Material::SetEmissive);
    SetShininess(other.GetShininess());
    SetAlpha(other.GetAlpha());
}

int Material::EqualTo(const double* colour) const
{
    if (colour == nullptr)
    {
        return 0;
    }
    const double rounded[] = {static_cast<float>(colour[0]), static_cast<float>(colour[1]),
                              static_cast<float>(colour[2])};
    const bool equal = HasColour(*this, &Material::GetAmbient, rounded) &&
                       HasColour(*this, &Material::GetDiffuse, rounded) &&
                       HasColour(*this, &Material::GetSpecular, kSpecular) &&
                       HasColour(*this, &Material::GetEmissive, kEmissive) &&
                       IsNear(GetShininess(), kShininess) && IsNear(GetAlpha(), kAlpha);
    return equal ? 1 : 0;
}

}  // namespace zorvex60
