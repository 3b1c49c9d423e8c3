// Decides where references lead: a resolver that sends one to another document, refuses others,
// and keeps count.
#include <filesystem>

#include "Example.h"

namespace
{

using example::Require;
using example::Text;
using zorvex_api::Configuration;
using zorvex_api::Object;
using zorvex_api::PluginProcessData;
using zorvex_api::Pointer;
using zorvex_api::Reference;
using zorvex_api::String;
using zorvex_api::URIResolver;
using zorvex_api::URIResolverRef;

class CatalogueResolver : public URIResolver
{
public:
    explicit CatalogueResolver(const std::string& catalogue) : m_catalogue(catalogue) {}

    void Process(PluginProcessData* data) override
    {
        constexpr int kMayFollow = 1;

        URIResolver::Process(data);
        void* owner = nullptr;
        data->Get(2, owner);
        // Without an owner it is the document that the application itself has asked for.
        if (data->m_operation == kMayFollow && owner)
        {
            void* pointer = nullptr;
            void* answer = nullptr;
            data->Get(4, pointer);
            data->Get(6, answer);
            *static_cast<int*>(answer) = Judge(*static_cast<Pointer*>(pointer));
        }
    }

    int Redirected() const { return m_redirected; }
    int Refused() const { return m_refused; }

private:
    /// 1 when the reference may be followed. The pointer can be changed in place.
    int Judge(Pointer& pointer)
    {
        if (pointer.GetFileName() == u"standard-parts.zorvex")
        {
            // Only the place changes; what the reference picks in the document stays.
            const String element = pointer.GetLocatorString();
            Require(pointer.Parse(String(m_catalogue.c_str()) + u"#" + element), "redirecting");
            ++m_redirected;
            return 1;
        }
        ++m_refused;
        return 0;
    }

    std::string m_catalogue;
    int m_redirected = 0;
    int m_refused = 0;
};

const char* const kOrder = R"(<?xml version="1.0" encoding="utf-8"?>
<ZORVEX xmlns="http://www.zorvex.org/Schemas/ZORVEXSchema" author="Jürgen Weiß" date="2024-05-02"
        time="10:00:00" schemaVersion="6">
  <ProductDef id="id1" name="Bestellung">
    <InstanceGraph id="id2">
      <ProductInstance id="id3" partRef="standard-parts.zorvex#id30" quantity="200"/>
      <ProductInstance id="id4" partRef="private/prices.zorvex#id7"/>
    </InstanceGraph>
  </ProductDef>
</ZORVEX>
)";

void WriteOrder(const std::string& path)
{
    constexpr int kWrite = 2;
    zorvex_api::FileStream file;
    Require(file.Open(path.c_str(), kWrite) != 0, "opening the file");
    const std::string text(kOrder);
    Require(file.Write(text.data(), static_cast<int>(text.size()), 1, 0) != 0, "writing the file");
    Require(file.Close() != 0, "closing the file");
}

Object* PartOf(const Object& document, const char16_t* id)
{
    const Object* instance = document.ResolveId(id);
    Require(instance != nullptr, "the instance is there");
    Reference reference;
    Require(instance->GetAttributeValue(u"partRef", reference), "reading the reference");
    return reference.GetHandle().GetObject();
}

void Work(const std::string& data, const std::string& out)
{
    const std::string path = out + "/own_resolver.zorvex";
    WriteOrder(path);

    // A relative place would be meant from the folder of the document that refers to it.
    CatalogueResolver resolver(std::filesystem::absolute(data).string() + "/fasteners.zorvex");
    const URIResolverRef scope(&resolver);  // every load in this scope asks it

    Object* document = nullptr;
    const Configuration options;
    Require(zorvex_api::LoadDocument(path.c_str(), options, &document), "loading");
    Require(resolver.Redirected() == 1, "one reference was redirected");
    Require(resolver.Refused() == 1, "one reference was refused");

    const Object* screw = PartOf(*document, u"id3");
    Require(screw != nullptr, "the screw was found in the catalogue");
    String name;
    Require(screw->GetAttributeValue(u"name", name), "reading the name");
    std::cout << "200 x " << Text(name) << '\n';
    Require(PartOf(*document, u"id4") == nullptr, "the prices stay private");
    delete document;
}

}  // namespace

int main(int argc, char** argv)
{
    return example::Run(argc, argv, &Work);
}
