#include "objectmodel/ClassTestSupport.h"
#include "runtime/MutexLock.h"
#include "runtime/NamespaceUris.h"

namespace zorvex_test
{

using namespace zorvex_api;

class NamespaceTest : public SessionTest
{
};

TEST_F(NamespaceTest, LegacyNamespacesStandForTheMainOne)
{
    const Namespace* main = Namespace::FindByUri(uris::kMain);
    ASSERT_NE(nullptr, main);
    EXPECT_TRUE(main->IsDefault());
    EXPECT_TRUE(main->IsCurrent());
    EXPECT_EQ(nullptr, main->Target());
    for (const uris::LegacyNamespace& legacy : uris::kLegacy)
    {
        const Namespace* record = Namespace::FindByUri(legacy.uri);
        ASSERT_NE(nullptr, record) << ToUtf8(legacy.uri);
        EXPECT_EQ(main, record->Target());
        EXPECT_FALSE(record->IsCurrent());
        EXPECT_EQ(ToString(legacy.prefix), record->Prefix());
    }
    const Namespace* xsi = Namespace::FindByPrefix(u"xsi");
    ASSERT_NE(nullptr, xsi);
    EXPECT_EQ(ToString(uris::kXmlSchemaInstance), xsi->Uri());
    EXPECT_FALSE(xsi->IsLegacy());
}

TEST_F(NamespaceTest, TheWalkGivesEachOnceInTheOrderOfRegistration)
{
    const MutexLock lock(kMutexNamespaces);
    int count = 0;
    const Namespace* last = nullptr;
    ASSERT_TRUE(Namespace::IsMain(View(Namespace::First()->Uri())));
    for (const Namespace* record = Namespace::First(); record != nullptr; record = record->Next())
    {
        last = record;
        ++count;
    }
    EXPECT_EQ(Namespace::Count(), count);
    EXPECT_EQ("xsi", Utf8(last->Prefix()));
}

TEST_F(NamespaceTest, ANamespaceGoesWithTheLastClassThatIsInIt)
{
    EXPECT_EQ(nullptr, Namespace::FindByUri(u"urn:x"));
    ClassDescriptor* foo = ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"first", nullptr);
    ClassRegistry::MakeRuntimeClass(u"Bar", u"urn:x", u"second", nullptr);
    EXPECT_EQ("first", Utf8(Namespace::PrefixOf(u"urn:x"))) << "the first prefix stays";

    std::unique_ptr<Object> object(foo->MakeObject());
    ClassDescriptor::Reset();
    EXPECT_NE(nullptr, Namespace::FindByUri(u"urn:x")) << "an object of it may still be saved";
    object.reset();
    EXPECT_EQ(nullptr, Namespace::FindByUri(u"urn:x"));
}

}  // namespace zorvex_test
