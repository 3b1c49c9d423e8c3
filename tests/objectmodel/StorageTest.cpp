#include <pthread.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/DocumentMap.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/EndOfObject.h"
#include "objectmodel/ExternalRep.h"
#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/GenericObject.h"

namespace zorvex_test
{

using testing::IsEmpty;
using testing::MatchesRegex;
using zorvex_api::ClassData;
using zorvex_api::ClassDescriptor;
using zorvex_api::ClassDescriptorImpl;
using zorvex_api::ClassRegistry;
using zorvex_api::DocumentMap;
using zorvex_api::ExternalRep;
using zorvex_api::FieldData;
using zorvex_api::FieldDescriptor;
using zorvex_api::GenericObject;
using zorvex_api::Object;
using zorvex_api::Result;
using zorvex_api::String;
using zorvex_api::TextView;

namespace
{

/// Runs `work` on a thread with a stack of one megabyte.
void OnSmallStack(const std::function<void()>& work)
{
    pthread_attr_t attributes;
    ASSERT_EQ(0, pthread_attr_init(&attributes));
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, 1 << 20));
    pthread_t thread;
    ASSERT_EQ(0, pthread_create(
                     &thread, &attributes,
                     [](void* argument) -> void*
                     {
                         (*static_cast<const std::function<void()>*>(argument))();
                         return nullptr;
                     },
                     const_cast<std::function<void()>*>(&work)));
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace

class StorageTest : public SessionTest
{
protected:
    static std::unique_ptr<Object> Make(const char16_t* className)
    {
        return std::unique_ptr<Object>(ClassDescriptor::FindByName(className)->MakeObject());
    }
    static FieldDescriptor* Field(const Object* object, TextView name)
    {
        return ClassDescriptorImpl::Of(object->GetClassDescriptor())
            ->FindField(name, zorvex_api::field_kind::kAll);
    }
    static FieldData* Touch(const Object* object, TextView name)
    {
        return ClassData::Of(object)->FindOrAddField(Field(object, name));
    }
    static std::string Attribute(const Object* object, const char16_t* name)
    {
        String value;
        EXPECT_THAT(Messages(object->GetAttributeValue(name, value)), IsEmpty());
        return Utf8(value);
    }
};

// --- classes ----------------------------------------------------------------------------------

TEST_F(StorageTest, AnObjectWithoutAClassAnswersWithNothing)
{
    const GenericObject object;
    EXPECT_EQ(nullptr, object.GetClassDescriptor());
    EXPECT_EQ("", Utf8(object.GetClassName()));
    EXPECT_EQ(-999, object.Is());
    EXPECT_EQ(0, object.IsSubClass(u"Object"));
    EXPECT_EQ(nullptr, ClassData::Of(&object)->fields);
}

TEST_F(StorageTest, ADocumentStartsWithItsInitialAttributesAndStandsInTheMap)
{
    const std::size_t before = DocumentMap::Count();
    auto document = Make(u"Document");
    EXPECT_EQ("6", Attribute(document.get(), u"schemaVersion"));
    EXPECT_EQ("unset", Attribute(document.get(), u"author"));
    EXPECT_THAT(Attribute(document.get(), u"date"), MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}"));
    EXPECT_THAT(Attribute(document.get(), u"time"), MatchesRegex("[0-9]{2}:[0-9]{2}:[0-9]{2}"));
    EXPECT_EQ("", Utf8(document->GetId()));
    EXPECT_TRUE(DocumentMap::Contains(ClassData::Of(document.get())));
    document.reset();
    EXPECT_EQ(before, DocumentMap::Count());
}

TEST_F(StorageTest, ADocumentThatIsReadGetsOnlyTheInitialAttributesThatItLacks)
{
    auto document = Make(u"Document");
    ClassData* data = ClassData::Of(document.get());
    ASSERT_TRUE(document->SetAttributeValue(u"author", String(u"J\u00f6rg")).Ok());
    ASSERT_TRUE(document->DeleteAttribute(u"date").Ok());
    data->FillInitialAttributes();
    EXPECT_EQ("J\u00f6rg", Attribute(document.get(), u"author"));
    EXPECT_EQ(10u, Attribute(document.get(), u"date").size());
}

TEST_F(StorageTest, ARunTimeClassBehavesAsItsNearestBuiltInBase)
{
    ClassDescriptor* base = ClassDescriptor::FindByName(u"Product");
    ClassDescriptor* middle =
        ClassRegistry::MakeRuntimeClass(u"Gear", u"http://example.org/drive", u"d", base);
    ClassDescriptor* own =
        ClassRegistry::MakeRuntimeClass(u"SpurGear", u"http://example.org/drive", u"d", middle);
    const std::unique_ptr<Object> gear(own->MakeObject());
    EXPECT_EQ(nullptr, dynamic_cast<GenericObject*>(gear.get()));
    EXPECT_EQ(own, gear->GetClassDescriptor());
    EXPECT_TRUE(gear->IsSubClass(u"Product"));
    EXPECT_TRUE(gear->IsSubClass(short{-25}));
    EXPECT_FALSE(Make(u"Product")->IsSubClass(short{-25}));

    ClassDescriptor* plain =
        ClassRegistry::MakeRuntimeClass(u"Note", u"http://example.org/drive", u"d", nullptr);
    const std::unique_ptr<Object> note(plain->MakeObject());
    EXPECT_NE(nullptr, dynamic_cast<GenericObject*>(note.get()));
    EXPECT_EQ(plain, note->GetClassDescriptor());
}

TEST_F(StorageTest, AGenericObjectThatItsOwnerRefusesRaises)
{
    const auto unit = Make(u"Unit");
    auto* product = ClassDescriptorImpl::Of(ClassDescriptor::FindByName(u"Product"));
    try
    {
        const GenericObject object(product, unit.get());
        FAIL() << "a Unit takes no Product";
    }
    catch (const zorvex_api::Exception& exception)
    {
        EXPECT_EQ(2, exception.GetCode());
        EXPECT_EQ("Cannot add child of type: Product to parent of type: Unit.",
                  Utf8(exception.GetMessage()));
    }
}

// --- fields -----------------------------------------------------------------------------------

TEST_F(StorageTest, TheFieldTouchedLastStandsFirst)
{
    const auto product = Make(u"Product");
    const ClassData* data = ClassData::Of(product.get());
    EXPECT_EQ(nullptr, data->FindField(Field(product.get(), u"productId")));
    FieldData* id = Touch(product.get(), u"productId");
    FieldData* catalogue = Touch(product.get(), u"catalogueId");
    EXPECT_EQ(id, Touch(product.get(), u"productId"));
    EXPECT_EQ(catalogue, data->fields);
    EXPECT_EQ(id, catalogue->next);
    EXPECT_FALSE(id->HasValue(*data, false));
    EXPECT_EQ(
        nullptr,
        ClassData::Of(product.get())->AddField(FieldDescriptor::BuiltIn(FieldDescriptor::kId)));
}

TEST_F(StorageTest, VeryManyFieldsOfOneObjectAreFoundInTimeThatGrowsWithTheirNumber)
{
    constexpr std::size_t kFields = 80000;
    ClassDescriptor* wide = ClassRegistry::MakeRuntimeClass(u"Wide", u"urn:wide", u"w", nullptr);
    std::vector<FieldDescriptor*> fields;
    for (std::size_t i = 0; i < kFields; ++i)
    {
        std::u16string name = u"n";
        for (const char digit : std::to_string(i))
        {
            name += static_cast<char16_t>(digit);
        }
        fields.push_back(wide->GetImplementation()->AddRuntimeField(
            name, zorvex_api::zorvexFieldString, nullptr, nullptr));
    }
    const std::unique_ptr<Object> object(wide->MakeObject());
    ClassData* data = ClassData::Of(object.get());
    std::vector<FieldData*> records;
    const auto start = std::chrono::steady_clock::now();
    for (FieldDescriptor* field : fields)
    {
        ASSERT_EQ(nullptr, data->FindField(field));
        records.push_back(data->FindOrAddField(field));
    }
    for (std::size_t i = 0; i < kFields; ++i)
    {
        ASSERT_EQ(records[i], data->FindField(fields[i]));
    }
    String value;
    for (std::size_t i = 0; i < kFields; ++i)
    {
        ASSERT_TRUE(object->GetAttributeValue(fields[i]->Name(), value).Ok());
    }
    // A part of a second, under a sanitizer too; a walk over the list each time takes many.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));

    data->RemoveField(records[7]);
    EXPECT_EQ(nullptr, data->FindField(fields[7]));
    EXPECT_EQ(records[8], data->FindField(fields[8]));
    FieldData* again = data->FindOrAddField(fields[7]);
    EXPECT_EQ(again, data->fields);
    EXPECT_EQ(again, data->FindField(fields[7]));
    EXPECT_EQ(records[kFields - 1], again->next);
}

TEST_F(StorageTest, EveryDoubleDiffersFromNotSet)
{
    const auto instance = Make(u"Instance");
    FieldData* data = Touch(instance.get(), u"quantity");
    for (const double number :
         {0.0, -0.0, 1.5, std::numeric_limits<double>::max(),
          std::numeric_limits<double>::infinity(), std::numeric_limits<double>::denorm_min()})
    {
        data->SetDouble(number);
        EXPECT_TRUE(data->IsSet());
        EXPECT_EQ(std::bit_cast<std::uint64_t>(number),
                  std::bit_cast<std::uint64_t>(data->Double()));
    }
    data->SetDouble(std::bit_cast<double>(FieldData::kReservedNan));
    EXPECT_TRUE(data->IsSet());
    EXPECT_TRUE(std::isnan(data->Double()));
}

TEST_F(StorageTest, InitialValuesTakeTheDefault)
{
    const auto display = Make(u"DisplayControl");
    ClassData& data = *ClassData::Of(display.get());
    FieldData* colour = Touch(display.get(), u"edgeColour");
    ASSERT_TRUE(colour->InitValue(data, false));
    const std::vector<double> numbers(colour->Doubles(), colour->Doubles() + 4);
    EXPECT_THAT(numbers, testing::ElementsAre(0.0, 0.0, 0.0, 1.0));

    const auto product = Make(u"Product");
    FieldData* required = Touch(product.get(), u"designRequired");
    ASSERT_TRUE(required->InitValue(*ClassData::Of(product.get()), false));
    EXPECT_EQ(1, required->Int());
    required->ResetValue(*ClassData::Of(product.get()));
    EXPECT_FALSE(required->IsSet());
    EXPECT_EQ(required, ClassData::Of(product.get())->fields);
}

TEST_F(StorageTest, PresenceWithDefaultsLooksIntoTheValue)
{
    const auto product = Make(u"Product");
    ClassData& data = *ClassData::Of(product.get());
    for (const TextView name : {u"productId", u"source", u"unitRef", u"optionRefs", u"Bound"})
    {
        FieldData* field = Touch(product.get(), name);
        ASSERT_TRUE(field->InitValue(data, false));
        EXPECT_TRUE(field->HasValue(data, false)) << zorvex_api::ToUtf8(name);
        EXPECT_FALSE(field->HasValue(data, true)) << zorvex_api::ToUtf8(name);
    }
    FieldData* defaulted = Touch(product.get(), u"monolithic");
    ASSERT_TRUE(defaulted->InitValue(data, false));
    EXPECT_TRUE(defaulted->HasValue(data, true));
}

TEST_F(StorageTest, AnEnumerationKeepsTextsOutsideItsListAndFreesThem)
{
    const auto product = Make(u"Product");
    FieldData* source = Touch(product.get(), u"source");
    const String* allowed = &source->descriptor->AllowedValue(0);
    source->SetEnum(allowed);
    EXPECT_EQ(zorvex_api::View(*allowed), source->EnumText());
    source->FreeEnum();
    source->SetEnumCopy(u"salvaged");
    EXPECT_EQ(u"salvaged", source->EnumText());
    // The copy goes with the object: the session counts its blocks.
}

// --- the end of objects -----------------------------------------------------------------------

TEST_F(StorageTest, ReferencesToADeadObjectKeepTheirText)
{
    const auto graph = Make(u"InstanceGraph");
    auto elsewhere = Make(u"Product");
    Object* unit = Make(u"Product").release();
    ASSERT_TRUE(unit->SetOwner(graph.get()).Ok());
    Object* product = Make(u"Product").release();
    ASSERT_TRUE(product->SetOwner(graph.get()).Ok());

    FieldData* local = Touch(product, u"unitRef");
    ASSERT_TRUE(local->InitEmpty(*ClassData::Of(product)));
    local->External()->StoreText(u"#id1");
    local->External()->LinkTarget(unit);
    FieldData* foreign = Touch(elsewhere.get(), u"unitRef");
    ASSERT_TRUE(foreign->InitEmpty(*ClassData::Of(elsewhere.get())));
    foreign->External()->StoreText(u"bracket.zorvex#id1");
    foreign->External()->LinkTarget(unit);

    unit->SetId(u"millimetre");
    EXPECT_EQ("#millimetre", Utf8(local->External()->GetText()));
    EXPECT_EQ("bracket.zorvex#id1", Utf8(foreign->External()->GetText()));
    ASSERT_TRUE(graph->DeleteElement(unit).Ok());
    EXPECT_FALSE(local->External()->HasTarget());
    EXPECT_FALSE(foreign->External()->HasTarget());
    EXPECT_EQ("#millimetre", Utf8(local->External()->GetText()));

    foreign->External()->LinkTarget(product);
    elsewhere.reset();  // the source goes first
    EXPECT_EQ(nullptr, ClassData::Of(product)->incoming);
}

TEST_F(StorageTest, TreesOfAnyDepthEndOnASmallStack)
{
    constexpr int kDepth = 100000;
    Object* top = Make(u"Bound").release();
    FieldDescriptor* nested = Field(top, u"Bound");
    Object* bottom = top;
    for (int i = 0; i < kDepth; ++i)
    {
        Object* child = Make(u"Bound").release();
        ASSERT_TRUE(ClassData::Of(bottom)->AppendChild(ClassData::Of(child), nested));
        bottom = child;
    }
    OnSmallStack([top] { delete top; });
}

TEST_F(StorageTest, RootsThatHoldEachOtherInAChainEndOnASmallStack)
{
    struct Holder : zorvex_api::Object
    {
        explicit Holder(int& alive) : m_alive(alive) { ++m_alive; }
        ~Holder() override { --m_alive; }
        int& m_alive;
    };
    constexpr int kTag = -4711;
    ClassData::RegisterExtensionDestroyer(
        kTag,
        [](ClassData&, void* next) { zorvex_api::DeleteUnheldRoot(static_cast<Object*>(next)); });
    int alive = 0;
    Object* first = nullptr;
    for (int i = 0; i < 20000; ++i)
    {
        Object* holder = new Holder(alive);
        ClassData::Of(holder)->SetExtension(kTag, first);
        first = holder;
    }
    OnSmallStack([first] { delete first; });
    EXPECT_EQ(0, alive);
}

TEST_F(StorageTest, ChildrenEndAfterTheirParentStartedAndInOrder)
{
    struct Witness : zorvex_api::Object
    {
        explicit Witness(std::vector<int>& log, int number) : m_log(log), m_number(number)
        {
            InitData(ClassDescriptor::FindByName(u"Product")->GetClass());
        }
        ~Witness() override { m_log.push_back(m_number); }
        std::vector<int>& m_log;
        int m_number;
    };
    std::vector<int> log;
    auto graph = Make(u"InstanceGraph");
    for (int i = 1; i <= 3; ++i)
    {
        ASSERT_TRUE((new Witness(log, i))->SetOwner(graph.get()).Ok());
    }
    graph.reset();
    EXPECT_THAT(log, testing::ElementsAre(1, 2, 3));
}

TEST_F(StorageTest, TheUserPointerIsKeptWithTheObject)
{
    const auto product = Make(u"Product");
    int mine = 0;
    EXPECT_EQ(nullptr, product->GetUserPointer());
    product->SetUserPointer(&mine);
    EXPECT_EQ(&mine, product->GetUserPointer());
    product->SetUserPointer(nullptr);
    EXPECT_EQ(nullptr, product->GetUserPointer());
    EXPECT_EQ(nullptr, ClassData::Of(product.get())->extensions);
}

namespace
{

/// What an application's own object can have: a base in front, members, a constructor that raises.
struct Tag
{
    virtual ~Tag() = default;
    int number = 7;
};

class Tagged : public Tag, public Object
{
public:
    explicit Tagged(bool raises)
    {
        InitData(ClassDescriptor::FindByName(u"Product")->GetClass());
        if (raises)
        {
            throw std::runtime_error("no");
        }
    }
    std::string text = std::string(100, 'x');
};

}  // namespace

TEST_F(StorageTest, ObjectsEndWhereverAndAsWhateverTheyWereMade)
{
    std::vector<std::unique_ptr<Object>> made;
    std::thread maker(
        [&]
        {
            for (int i = 0; i < 300; ++i)
            {
                made.push_back(Make(i % 3 == 0 ? u"Document" : u"Product"));
                made.push_back(std::make_unique<Tagged>(false));
                EXPECT_THROW(Tagged(true), std::runtime_error);
                EXPECT_THROW(std::make_unique<Tagged>(true), std::runtime_error);
            }
        });
    maker.join();
    for (std::size_t i = 1; i < made.size(); i += 2)
    {
        // Through the base that stands in front.
        auto* tagged = static_cast<Tagged*>(made[i].release());
        EXPECT_TRUE(tagged->SetAttributeValue(u"productId", String(u"1")).Ok());
        EXPECT_EQ(7, tagged->number);
        delete static_cast<Tag*>(tagged);
    }
    std::thread([&] { made.clear(); }).join();
    Object::operator delete(nullptr);
    const auto again = Make(u"Product");
    EXPECT_EQ("Product", Utf8(again->GetClassName()));
}

TEST(StorageLifetimeTest, AnObjectMayOutliveTheSession)
{
    ASSERT_EQ(0, zorvex_api::Initialise(0, nullptr, 0, nullptr, nullptr, nullptr));
    std::unique_ptr<Object> document(ClassDescriptor::FindByName(u"Document")->MakeObject());
    Object* product = nullptr;
    ASSERT_TRUE(document->AddElement(u"Product", String(), product).Ok());
    ASSERT_TRUE(product->SetAttributeValue(u"productId", String(u"4711")).Ok());
    EXPECT_EQ(0, zorvex_api::Terminate());
    document.reset();
    ASSERT_EQ(0, zorvex_api::Initialise(0, nullptr, 0, nullptr, nullptr, nullptr));
    EXPECT_EQ(0, zorvex_api::Terminate());
}

}  // namespace zorvex_test
