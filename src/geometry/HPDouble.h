#pragma once

#include <cfloat>

#if defined(__FAST_MATH__)
#error "High precision is lost when the compiler may reorder floating-point arithmetic."
#endif

namespace zorvex_api
{

/// The unevaluated sum of two doubles, normalised so that `hi` is the sum rounded to double: about
/// 106 bits of significand.
///
/// The error-free transformations hold only in strict binary64 arithmetic, each operation rounded
/// on its own: no fused multiply-add, no wider intermediates.
struct HPDouble
{
    double hi = 0.0;
    double lo = 0.0;
};

static_assert(FLT_EVAL_METHOD == 0 && DBL_MANT_DIG == 53, "needs strict binary64 arithmetic");

namespace internal
{

inline HPDouble Split(double a)
{
    const double t = a * 134217729.0;  // 2^27 + 1
    const double high = (a - t) + t;
    return {high, a - high};
}

}  // namespace internal

inline HPDouble operator-(const HPDouble& a)
{
    return {-a.hi, -a.lo};
}

inline HPDouble operator*(const HPDouble& x, const HPDouble& y)
{
    const HPDouble xs = internal::Split(x.hi);
    const HPDouble ys = internal::Split(y.hi);
    const double hh = xs.hi * ys.hi;
    const double m = xs.hi * ys.lo + xs.lo * ys.hi;
    const double s = m + hh;
    double e = ((hh - s) + m) + xs.lo * ys.lo;
    e += x.lo * y.hi + x.hi * y.lo;
    const double hi = s + e;
    return {hi, (s - hi) + e};
}

inline HPDouble operator+(const HPDouble& x, const HPDouble& y)
{
    // two-sum of the high parts and of the low parts
    const double s = x.hi + y.hi;
    const double sb = s - x.hi;
    const double e = (x.hi - (s - sb)) + (y.hi - sb);
    const double t = x.lo + y.lo;
    const double tb = t - x.lo;
    const double f = (x.lo - (t - tb)) + (y.lo - tb);
    // two fast renormalisations
    const double c = e + t;
    const double u = s + c;
    const double v = f + (c - (u - s));
    const double hi = u + v;
    return {hi, v - (hi - u)};
}

inline HPDouble operator-(const HPDouble& x, const HPDouble& y)
{
    return x + -y;
}

inline HPDouble operator/(const HPDouble& x, const HPDouble& y)
{
    const double q1 = x.hi / y.hi;
    const HPDouble p = HPDouble{q1, 0.0} * HPDouble{y.hi, 0.0};
    const double r = (((x.hi - p.hi) - p.lo) + x.lo) - q1 * y.lo;
    const double q2 = r / y.hi;
    const double hi = q1 + q2;
    return {hi, (q1 - hi) + q2};
}

}  // namespace zorvex_api
