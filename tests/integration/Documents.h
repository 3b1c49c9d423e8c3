#pragma once

#include <memory>
#include <string>
#include <vector>

#include "objectmodel/DocumentMap.h"
#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Reference.h"

namespace zorvex_test
{

/// The text of an attribute, empty when it has none.
inline std::string Text(const zorvex_api::Object* object, const zorvex_api::String& name)
{
    zorvex_api::String value;
    object->GetAttributeValue(name, value);
    return Utf8(value);
}

/// What a reference of `object` leads to, as far as that is known; nothing is loaded.
inline zorvex_api::Object* Target(const zorvex_api::Object* object,
                                  const zorvex_api::String& name = u"revisionRef")
{
    zorvex_api::Array<zorvex_api::Reference> references;
    object->GetAttributeValue(name, references);
    return references.GetSize() > 0 ? references[0].GetHandle().GetObject() : nullptr;
}

/// Documents that refer to each other, in a folder of the test's own.
class DocumentsTest : public SessionTest
{
protected:
    using SessionTest::SessionTest;

    void SetUp() override
    {
        SessionTest::SetUp();
        EXPECT_EQ(0u, zorvex_api::DocumentMap::Count());
    }
    void TearDown() override
    {
        EXPECT_EQ(0u, zorvex_api::DocumentMap::Count()) << "documents left behind";
        SessionTest::TearDown();
    }

    /// A document with the views id5 and id6, and one more for each reference: id11, id12, ...
    static std::string Document(const std::vector<std::string>& references = {})
    {
        std::string referring;
        int id = 11;
        for (const std::string& reference : references)
        {
            referring += "<ProductRevisionView id=\"id" + std::to_string(id++) +
                         "\" revisionRef=\"" + reference + "\"/>";
        }
        return WrapDocument("<ProductDef id=\"id1\"><InstanceGraph id=\"id2\">" + referring +
                            "<ProductRevisionView id=\"id5\" name=\"five\"/>"
                            "<ProductRevisionView id=\"id6\"/></InstanceGraph></ProductDef>");
    }
    zorvex_api::String Write(const std::string& name, const std::vector<std::string>& references)
    {
        return m_folder.Write(name, Document(references));
    }

    /// A document made by hand, with views id5 and id11, the latter to refer from.
    static std::unique_ptr<zorvex_api::Object> MakeDocument()
    {
        using zorvex_api::Object;
        std::unique_ptr<Object> document(
            zorvex_api::ClassDescriptor::FindByName(u"Document")->MakeObject());
        Object* definition = nullptr;
        Object* graph = nullptr;
        Object* made = nullptr;
        document->AddElement(u"", u"ProductDef", definition);
        definition->AddElement(u"", u"InstanceGraph", graph);
        graph->AddElement(u"ProductRevisionView", u"", made);
        EXPECT_EQ(1, made->SetId(u"id5"));
        graph->AddElement(u"ProductRevisionView", u"", made);
        EXPECT_EQ(1, made->SetId(u"id11"));
        return document;
    }
    static void Refer(zorvex_api::Object* document, zorvex_api::Object* target,
                      const zorvex_api::String& field = u"revisionRef")
    {
        const zorvex_api::Result set = document->ResolveId(u"id11")->SetAttributeValue(
            field, zorvex_api::Reference(zorvex_api::Handle(target)));
        EXPECT_EQ(0, set.NumberOfErrors()) << testing::PrintToString(set);
    }

    static zorvex_api::Result Save(zorvex_api::Object* document, const zorvex_api::String& uri,
                                   Options options = {})
    {
        return document->Save(uri, MakeOptions(options).get());
    }

    static std::size_t Alive() { return zorvex_api::DocumentMap::Count(); }

    ScratchFolder m_folder;
};

}  // namespace zorvex_test
