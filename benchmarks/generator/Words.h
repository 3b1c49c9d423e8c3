#pragma once

#include <array>
#include <cstddef>

namespace zorvex_bench
{

/// What a part is, in the languages of a document.
struct Noun
{
    const char* code;  // the beginning of its number
    const char* english;
    const char* german;
    const char* czech;
    const char* japanese;
};

constexpr std::array<Noun, 20> kNouns{{
    {"BRK", "Bracket", "Winkel", "Konzola", "ブラケット"},
    {"PLT", "Plate", "Platte", "Deska", "プレート"},
    {"SCR", "Screw", "Schraube", "Šroub", "ねじ"},
    {"NUT", "Nut", "Mutter", "Matice", "ナット"},
    {"WSH", "Washer", "Scheibe", "Podložka", "座金"},
    {"SHF", "Shaft", "Welle", "Hřídel", "シャフト"},
    {"BRG", "Bearing", "Lager", "Ložisko", "軸受"},
    {"HSG", "Housing", "Gehäuse", "Těleso", "ハウジング"},
    {"CVR", "Cover", "Deckel", "Víko", "カバー"},
    {"GSK", "Gasket & seal", "Dichtung", "Těsnění", "ガスケット"},
    {"VLV", "Valve", "Ventil", "Ventil", "バルブ"},
    {"HSE", "Hose", "Schlauch", "Hadice", "ホース"},
    {"CLP", "Clamp", "Schelle", "Objímka", "クランプ"},
    {"GRW", "Gear wheel", "Zahnrad", "Ozubené kolo", "歯車"},
    {"SPR", "Spring", "Feder", "Pružina", "ばね"},
    {"PIN", "Dowel pin", "Passstift", "Kolík", "ピン"},
    {"CBL", "Cable", "Kabel", "Kabel", "ケーブル"},
    {"SNS", "Sensor", "Sensor", "Snímač", "センサー"},
    {"MTR", "Motor", "Motor", "Motor", "モーター"},
    {"FRM", "Frame", "Rahmen", "Rám", "フレーム"},
}};

constexpr std::array<const char*, 12> kPlaces{"left",  "right", "front", "rear",  "upper", "lower",
                                              "inner", "outer", "main",  "spare", "short", "long"};

constexpr std::array<const char*, 8> kMetals{
    "Steel S235JR",  "Steel C45",      "Aluminium 6061", "Cast iron GJL250",
    "Bronze CuSn12", "Polyamide PA66", "Rubber NBR70",   "Stainless 1.4301"};

constexpr std::array<const char*, 6> kPeople{"Jürgen Weiß",  "Marie Nováková", "Anna Schmidt",
                                             "Kenji Tanaka", "John Miller",    "Zoë Müller"};

constexpr std::array<const char*, 6> kColours{"RAL 7035", "RAL 9005", "RAL 5010",
                                              "RAL 3020", "none",     "zinc plated"};

}  // namespace zorvex_bench
