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
    ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:b", u"b", nullptr);
    ClassRegistry::MakeRuntimeClass(u"Foo", u"http://a", u"a", nullptr);
    ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:c", u"c", nullptr);
    ClassDescriptor::Reset(u"http://a");

    const MutexLock lock(kMutexNamespaces);
    std::vector<std::string> uris;
    for (const Namespace* record = Namespace::First(); record != nullptr; record = record->Next())
    {
        uris.push_back(Utf8(record->Uri()));
    }
    ASSERT_EQ(static_cast<size_t>(Namespace::Count()), uris.size());
    EXPECT_EQ(ToUtf8(Namespace::MainUri()), uris.front());
    EXPECT_EQ("urn:b", uris[uris.size() - 2]);
    EXPECT_EQ("urn:c", uris.back());
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
