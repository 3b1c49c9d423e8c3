// Generated from the vocabulary of the schemas; don't edit.
#include "zorvex60/eHead.h"

namespace zorvex60
{

int zorvexFieldEnumHead = zorvex_api::EnumBase::Init();

eHead::~eHead() = default;

int eHead::Set(const char* text)
{
    return SetFrom(Values(), text);
}

const char* const* eHead::Values()
{
    static const char* const kValues[] = {
        "unset",
        "hexagon",
        "round",
        "flat, countersunk",
        nullptr};
    return kValues;
}

const eHead eHeadUnset{eHead::Constant{0}};
const eHead eHeadHexagon{eHead::Constant{1}};
const eHead eHeadRound{eHead::Constant{2}};
const eHead eHeadFlat{eHead::Constant{3}};

}  // namespace zorvex60

