#include <iostream>
#include <memory>
#include <string>

#include "Command.h"
#include "Document.h"
#include "Fields.h"
#include "Json.h"
#include "Report.h"
#include "Text.h"
#include "zorvex_api/TraverseContext.h"

using zorvex_api::Error;
using zorvex_api::Object;
using zorvex_api::Result;
using zorvex_api::zorvexTraverseResult;

namespace zorvex_cli
{
namespace
{

constexpr int kReferenceError = 517;

struct Arguments
{
    std::string file;
    bool json = false;
    bool allowWarnings = false;
    Options options;
};

/// Finds references to elements of the same document that aren't there. A load says nothing of
/// them, since the application may still add the target.
class DanglingReferences : public zorvex_api::TraverseContext
{
public:
    explicit DanglingReferences(Result& findings) : m_findings(findings) { SetFollowURI(0); }

    zorvexTraverseResult Visit(Object* object) override
    {
        for (const ReferenceValue& value : m_reader.Read(*object))
        {
            if (value.isLocalText && value.target == Target::None)
            {
                m_findings.AddError(kReferenceError, zorvex_api::WARNING,
                                    FromUtf8(Describe(*object, value)));
            }
        }
        return zorvex_api::zorvexTraverseContinue;
    }

private:
    static std::string Describe(const Object& object, const ReferenceValue& value)
    {
        const std::string id = ToUtf8(object.GetId());
        return "Nothing has the id that <" + ToUtf8(object.GetClassName()) +
               (id.empty() ? "" : " id=\"" + id + "\"") + " " + value.field + "=\"" + value.text +
               "\"> refers to";
    }

    Result& m_findings;
    ReferenceReader m_reader;
};

Json ToJson(const Result& findings)
{
    Json list = Json::array();
    for (int i = 0; i < findings.NumberOfErrors(); ++i)
    {
        const Error* error = findings.GetError(i);
        list.push_back({{"severity", SeverityName(error->GetSeverity())},
                        {"code", error->GetCode()},
                        {"text", ToUtf8(error->GetMessage())}});
    }
    return list;
}

int Check(const Arguments& arguments)
{
    Document document(arguments.options);
    const bool isLoaded = document.Load(arguments.file);

    Result dangling;
    DanglingReferences search(dangling);
    for (Object* root : document.Roots())
    {
        root->Traverse(&search);
    }
    Report(dangling);

    Result findings(document.LoadResult());
    findings.Merge(dangling);
    const int errors = Count(findings, zorvex_api::ERROR);
    const int warnings = Count(findings, zorvex_api::WARNING) - errors;
    if (arguments.json)
    {
        Write(Json{{"file", arguments.file},
                   {"errors", errors},
                   {"warnings", warnings},
                   {"findings", ToJson(findings)}});
    }
    else
    {
        std::cout << OneLine(arguments.file) << ": " << errors << " errors, " << warnings
                  << " warnings\n";
    }
    const bool isGood = isLoaded && errors == 0 && (warnings == 0 || arguments.allowWarnings);
    return isGood ? kGood : kFindings;
}

}  // namespace

void AddCheck(CLI::App& app, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand(
        "check", "Loads a document and tells what is wrong with it; a warning counts as a finding");
    command->add_option("FILE", arguments->file, "The document")->required();
    command->add_flag("--allow-warnings", arguments->allowWarnings,
                      "Only errors make the exit code 1");
    command->add_flag("--json", arguments->json, "Machine-readable output");
    arguments->options.AddTo(*command);
    command->callback([arguments, &action] { action = [arguments] { return Check(*arguments); }; });
}

}  // namespace zorvex_cli
