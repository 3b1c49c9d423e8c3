#include <gtest/gtest.h>

#include "support/Printers.h"
#include "zorvex60/eAccessIntentEnum.h"
#include "zorvex60/eAnn3DDimensionStandardType.h"
#include "zorvex60/eAnn3DDimensionTolerance.h"
#include "zorvex60/eAnn3DLocatorEdgeType.h"
#include "zorvex60/eBoundingType.h"
#include "zorvex60/eMassPropertyUnitType.h"
#include "zorvex60/eMeasureEnum.h"
#include "zorvex_api/Exception.h"
#include "zorvex_cl60/eType.h"
#include "zorvex_deprecated/eType.h"

namespace
{

using namespace zorvex60;
using zorvex_api::String;
using zorvex_test::Utf8;

TEST(EnumerationTest, EmptyTextsMeanUnsetButAnEmptyNarrowTextIsInvalid)
{
    const eBoundingType byDefault;
    EXPECT_EQ("unset", Utf8(byDefault.ToString()));
    EXPECT_TRUE(byDefault == eBoundingType(String()));
    EXPECT_TRUE(byDefault == eBoundingType(static_cast<const char*>(nullptr)));
    EXPECT_TRUE(byDefault == eBoundingTypeUnset);
    const eBoundingType invalid("");
    EXPECT_TRUE(invalid != byDefault);
    EXPECT_EQ("", Utf8(invalid.ToString()));
}

TEST(EnumerationTest, UnknownTextsAreKeptAndCompared)
{
    const eBoundingType one(String(u"cone"));
    EXPECT_EQ("cone", Utf8(one.ToString()));
    EXPECT_TRUE(one == eBoundingType("cone"));
    EXPECT_TRUE(one != eBoundingType("wedge"));
    EXPECT_TRUE(one != eBoundingTypeBox);
    eBoundingType copy(one);
    EXPECT_EQ("cone", Utf8(copy.ToString()));
    copy = eBoundingTypeBox;
    EXPECT_EQ("box", Utf8(copy.ToString()));
    copy = one;
    EXPECT_TRUE(copy == one);
}

TEST(EnumerationTest, SetRefusesUnknownTextsAndLeavesTheValue)
{
    eBoundingType value("box");
    EXPECT_EQ("box", Utf8(value.ToString()));
    EXPECT_EQ(0, value.Set("nosuch"));
    EXPECT_EQ(0, value.Set("Box"));
    EXPECT_EQ("box", Utf8(value.ToString()));
    EXPECT_EQ(1, value.Set(String(u"sphere")));
    EXPECT_EQ("sphere", Utf8(value.ToString()));
    EXPECT_EQ(1, value.Set(static_cast<const char*>(nullptr)));
    EXPECT_TRUE(value == eBoundingTypeUnset);
    eBoundingType invalid("nosuch");
    EXPECT_EQ(1, invalid.Set("compound"));
    EXPECT_EQ("compound", Utf8(invalid.ToString()));
}

TEST(EnumerationTest, AssigningAnUnknownTextRaises)
{
    eAccessIntentEnum value = eAccessIntentEnumReference;
    try
    {
        value = "nosuch";
        FAIL() << "nothing was raised";
    }
    catch (const zorvex_api::Exception& exception)
    {
        EXPECT_EQ(2, exception.GetCode());
        EXPECT_EQ("nosuch is not a valid eAccessIntentEnum", Utf8(exception.GetMessage()));
    }
    EXPECT_TRUE(value == eAccessIntentEnumReference);
    EXPECT_THROW(value = String(u"other"), zorvex_api::Exception);
    value = "noAccess";
    EXPECT_TRUE(value == eAccessIntentEnumNoAccess);
}

TEST(EnumerationTest, OddValuesHaveTheirConstants)
{
    EXPECT_TRUE(eBoundingType("oldbox") == eBoundingTypeOldBox);
    EXPECT_EQ("oldbox", Utf8(eBoundingTypeOldBox.ToString()));
    EXPECT_EQ("pounds,feet", Utf8(eMassPropertyUnitTypePoundsFeet.ToString()));
    EXPECT_EQ("ANSI Y14.5M 1982", Utf8(eAnn3DDimensionStandardTypeANSI.ToString()));
    EXPECT_EQ("-limit1", Utf8(eAnn3DDimensionToleranceLowerLimit1.ToString()));
    EXPECT_TRUE(eAnn3DLocatorEdgeTypeELower != eAnn3DLocatorEdgeTypeEUpper);
    EXPECT_EQ("e", Utf8(eAnn3DLocatorEdgeTypeELower.ToString()));
    EXPECT_EQ("E", Utf8(eAnn3DLocatorEdgeTypeEUpper.ToString()));
}

TEST(EnumerationTest, SameNameInTwoNamespacesIsTwoTables)
{
    EXPECT_STREQ("default", zorvex_cl60::eType::Values()[1]);
    EXPECT_STREQ("general", zorvex_deprecated::eType::Values()[1]);
}

TEST(EnumerationTest, FieldTypeCodesAreDistinct)
{
    EXPECT_GT(zorvexFieldEnumBoundingType, 10000);
    EXPECT_NE(zorvexFieldEnumBoundingType, zorvexFieldEnumAccessIntentEnum);
    EXPECT_NE(zorvex_cl60::zorvexFieldEnumType, zorvex_deprecated::zorvexFieldEnumType);
    const int next = zorvex_api::EnumBase::m_iCurrField;
    EXPECT_EQ(next, zorvex_api::EnumBase::Init());
    EXPECT_EQ(next + 1, zorvex_api::EnumBase::m_iCurrField);
    EXPECT_GE(next, 10001 + 353);
}

TEST(EnumerationTest, LongestTableIsWhole)
{
    int count = 0;
    for (const char* const* value = eMeasureEnum::Values(); *value != nullptr; ++value)
    {
        EXPECT_TRUE(eMeasureEnum(*value).Set(*value)) << *value;
        ++count;
    }
    EXPECT_EQ(85, count);
}

}  // namespace
