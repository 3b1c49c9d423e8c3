#include <memory>
#include <utility>

#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Reference.h"

namespace zorvex_test
{

using zorvex_api::Array;
using zorvex_api::ClassDescriptor;
using zorvex_api::Handle;
using zorvex_api::Object;
using zorvex_api::Reference;
using zorvex_api::String;

class HandleTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_object.reset(ClassDescriptor::FindByName(u"Unit")->MakeObject());
    }
    void TearDown() override
    {
        m_object.reset();
        SessionTest::TearDown();
    }

    std::unique_ptr<Object> m_object;
    int m_thing = 0;
};

TEST_F(HandleTest, AnObjectHandleIsTheSameHoweverItWasMade)
{
    const Handle direct(m_object.get());
    const Handle named(m_object.get(), u"ZORVEX");
    Handle switched(m_object.get(), u"JT");
    EXPECT_EQ(nullptr, switched.GetObject());
    EXPECT_TRUE(switched != direct);
    switched.SetFormat(u"ZORVEX");
    EXPECT_TRUE(direct == named);
    EXPECT_TRUE(switched == direct);
    EXPECT_EQ(m_object.get(), named.GetObject());
    EXPECT_EQ("ZORVEX", Utf8(named.GetFormat()));
}

TEST_F(HandleTest, NullAndClearedHandlesAreEmpty)
{
    const Handle null(static_cast<Object*>(nullptr));
    EXPECT_EQ(0, null.IsObject());
    EXPECT_EQ(nullptr, null.GetObject());
    EXPECT_TRUE(null.GetFormat().IsEmpty());
    EXPECT_FALSE(null ? true : false);
    Handle object(m_object.get());
    EXPECT_TRUE(object ? true : false);
    object.Clear();
    EXPECT_TRUE(object == null);
    Handle foreign(&m_thing, u"STEP");
    foreign.Clear();
    EXPECT_TRUE(foreign == null);
    foreign.Destroy();  // nothing to do
}

TEST_F(HandleTest, FormatsAreCopiedAndComeFirstInTheOrder)
{
    Handle foreign(&m_thing, u"STEP");
    const Handle copy(foreign);
    Handle object(m_object.get());
    object = foreign;
    foreign.SetFormat(u"JT");
    EXPECT_EQ("STEP", Utf8(copy.GetFormat()));
    EXPECT_TRUE(object == copy);
    EXPECT_TRUE(foreign < copy);
    EXPECT_TRUE(copy < Handle(m_object.get()));
    EXPECT_FALSE(Handle(m_object.get()) < copy);
    foreign = Handle(m_object.get());
    EXPECT_EQ(1, foreign.IsObject());
    foreign = *&foreign;
    EXPECT_EQ(m_object.get(), foreign.GetObject());
}

using ReferenceTest = HandleTest;

TEST_F(ReferenceTest, TheFirstHandleIsTheHandle)
{
    const Reference text(String(u"#id4"));
    EXPECT_EQ(nullptr, text.GetHandle().GetData());
    EXPECT_EQ(0, text.GetHandles().GetSize());
    Array<Handle> several;
    several.Add(Handle(m_object.get()));
    several.Add(Handle(&m_thing, u"STEP"));
    const Reference many(u"#id4", several);
    EXPECT_EQ(m_object.get(), many.GetHandle().GetObject());
    EXPECT_EQ(2, many.GetHandles().GetSize());
    const Reference one{Handle(m_object.get())};
    EXPECT_EQ(1, one.GetHandles().GetSize());
    EXPECT_EQ(0, Reference().GetHandles().GetSize());
}

TEST_F(ReferenceTest, ComparisonGoesByTextThenNumberThenHandles)
{
    const Handle object(m_object.get());
    const Handle foreign(&m_thing, u"STEP");
    Array<Handle> single;
    single.Add(object);
    EXPECT_TRUE(Reference(u"a", object) == Reference(u"a", single));
    EXPECT_TRUE(Reference(u"a", foreign) < Reference(u"b"));
    EXPECT_TRUE(Reference(String(u"a")) < Reference(u"a", object));
    EXPECT_TRUE(Reference(u"a", foreign) < Reference(u"a", object));
    EXPECT_TRUE(Reference(String()) == Reference());
}

TEST_F(ReferenceTest, CopiesAreIndependentAndMovesLeaveNothing)
{
    Reference original(u"#id4", Handle(m_object.get()));
    Reference copy(original);
    copy.SetString(u"#id5");
    EXPECT_EQ("#id4", Utf8(original.GetString()));
    Reference moved(std::move(original));
    original = copy;
    copy = std::move(moved);
    EXPECT_EQ("#id4", Utf8(copy.GetString()));
    EXPECT_EQ("#id5", Utf8(original.GetString()));
    EXPECT_TRUE(moved.GetString().IsEmpty());
    EXPECT_EQ(m_object.get(), copy.GetHandle().GetObject());
}

}  // namespace zorvex_test
