// A small application as a user writes it: builds a document, saves it, loads it and reads it back
// through typed accessors and through the generic interface.
#include <zorvex60/Document.h>
#include <zorvex60/Product.h>
#include <zorvex_api/zorvex_api.h>

#include <cstdio>

namespace
{

using zorvex_api::Configuration;
using zorvex_api::Object;
using zorvex_api::Result;
using zorvex_api::String;

int Fail(const char* what, const Result& result)
{
    const char* text = result.GetMessage();
    std::fprintf(stderr, "%s: %s\n", what, text ? text : "");
    return 1;
}

int Work()
{
    const String path(u"consumer.zorvex");
    const Configuration options;

    auto* document = new zorvex60::Document;
    zorvex60::Structure* structure = document->AddStructure();
    auto* product = new zorvex60::Product;
    Result result = document->AddStructure(product);
    if (!structure || !result.Ok())
    {
        return Fail("adding a product", result);
    }
    result.Merge(product->SetProductId(u"ŠR-8×25"));
    result.Merge(product->SetAttributeValue(u"name", u"Šroub"));
    result.Merge(document->Save(path, options));
    delete document;
    if (!result.Ok())
    {
        return Fail("saving", result);
    }

    Object* loaded = nullptr;
    result = zorvex_api::LoadDocument(path, options, &loaded);
    auto* again = dynamic_cast<zorvex60::Document*>(loaded);
    if (!result.Ok() || !again || again->NumberOfStructures() != 2)
    {
        return Fail("loading", result);
    }
    auto* read = dynamic_cast<zorvex60::Product*>(again->GetStructure(1));
    const bool isSame = read && read->GetProductId() == u"ŠR-8×25" && read->GetName() == u"Šroub";
    delete loaded;
    return isSame ? 0 : Fail("the product came back changed", result);
}

}  // namespace

int main()
{
    if (zorvex_api::Initialise(0, nullptr, nullptr, nullptr) != 0)
    {
        std::fprintf(stderr, "the session could not be started\n");
        return 1;
    }
    int code = 1;
    try
    {
        code = Work();
    }
    catch (const zorvex_api::Exception& exception)
    {
        code = Fail("an exception", Result(exception.GetCode(), exception.GetMessage()));
    }
    return zorvex_api::Terminate() == 0 ? code : 1;
}
