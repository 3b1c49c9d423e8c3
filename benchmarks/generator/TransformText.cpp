#include "generator/TransformText.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <initializer_list>

namespace zorvex_bench
{

namespace
{

struct Angle
{
    double cosine;
    double sine;
};

// Written out, so that no mathematics library has a say in the bytes of a document.
constexpr std::array<Angle, 8> kAngles{{{0.0, 1.0},
                                        {-1.0, 0.0},
                                        {0.9659258262890683, 0.25881904510252074},
                                        {0.8660254037844386, 0.5},
                                        {0.7071067811865476, 0.7071067811865475},
                                        {0.5, 0.8660254037844386},
                                        {0.6427876096865394, 0.766044443118978},
                                        {0.3420201433256688, 0.9396926207859083}}};

constexpr int kDigits = 16;

std::string Text(double number)
{
    std::array<char, 32> text;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number,
                                            std::chars_format::general, kDigits);
    return {text.data(), end};
}

/// A length up to 8 m in metres. Most are whole tenths of a millimetre, as drawn.
double Length(Random& random)
{
    const std::uint32_t tenths = random.Below(80000);
    const std::uint32_t rest = random.Chance(60) ? random.Below(100) : 0;
    return (tenths * 100 + rest) / 1e6;
}

double SignedLength(Random& random)
{
    const double length = Length(random);
    return random.Chance(50) ? 0.0 - length : length;
}

std::string Join(std::initializer_list<double> numbers)
{
    std::string text;
    for (const double number : numbers)
    {
        text.append(text.empty() ? "" : " ").append(Text(number));
    }
    return text;
}

}  // namespace

std::string MoveTransform(Random& random)
{
    const double x = SignedLength(random);
    const double y = SignedLength(random);
    const double z = SignedLength(random);
    return Join({x, y, z});
}

std::string GeneralTransform(Random& random)
{
    const auto [c, s] = kAngles[random.Below(kAngles.size())];
    std::string turn;
    switch (random.Below(3))
    {
        case 0:
            turn = Join({1, 0, 0, 0, 0, c, s, 0, 0, 0 - s, c, 0});
            break;
        case 1:
            turn = Join({c, 0, 0 - s, 0, 0, 1, 0, 0, s, 0, c, 0});
            break;
        default:
            turn = Join({c, s, 0, 0, 0 - s, c, 0, 0, 0, 0, 1, 0});
    }
    return turn + " " + MoveTransform(random) + " 1";
}

std::string BoxNumbers(Random& random)
{
    const std::string centre = MoveTransform(random);
    const double x = Length(random);
    const double y = Length(random);
    const double z = Length(random);
    return centre + " " + Join({x, y, z});
}

std::string ColourNumbers(Random& random)
{
    const double red = random.Below(101) / 100.0;
    const double green = random.Below(101) / 100.0;
    const double blue = random.Below(101) / 100.0;
    return Join({red, green, blue});
}

}  // namespace zorvex_bench
