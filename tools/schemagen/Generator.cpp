#include "Generator.h"

#include <cstdio>
#include <set>
#include <string>

#include "HeaderEmitter.h"
#include "Members.h"
#include "OutputFolder.h"
#include "ReferenceEmitter.h"
#include "SourceEmitter.h"

namespace schemagen
{

namespace
{

// "sources/Classes07.cpp"; the build knows these names.
std::string SourceName(const char* stem, std::size_t index)
{
    char number[8];
    std::snprintf(number, sizeof number, "%02u", static_cast<unsigned>(index));
    return std::string("sources/") + stem + number + ".cpp";
}

void WriteHeaders(const Vocabulary& vocabulary, const Settings& settings, OutputFolder& out)
{
    const std::set<std::string> objectNames = ReadOperationNames(settings.objectHeader);
    for (const CodeNamespace& code : vocabulary.codes)
    {
        out.Write(code.name + "/Common.h", CommonHeader(code));
        out.Write(code.name + "/" + code.name + ".h", UmbrellaHeader(vocabulary, code));
    }
    for (const Class& item : vocabulary.classes)
    {
        const Members members = ReadMembers(settings.members, item);
        out.Write(item.CodeName() + "/" + item.name + ".h",
                  ClassHeader(item, members, objectNames));
    }
    for (const Enumeration& item : vocabulary.enums)
    {
        out.Write(item.CodeName() + "/" + item.name + ".h", EnumHeader(item));
    }
    for (const CodeNamespace& code : vocabulary.codes)
    {
        out.RemoveStale(code.name);
    }
}

void WriteSources(const Vocabulary& vocabulary, const Settings& settings, OutputFolder& out)
{
    out.Write("schema/GeneratedClasses.h", RegistrationHeader(vocabulary));
    out.Write("sources/Registration.cpp", RegistrationSource(vocabulary));
    for (std::size_t i = 0; i < settings.classSources; ++i)
    {
        out.Write(SourceName("Classes", i),
                  ClassSource(Chunk(vocabulary.classes, i, settings.classSources)));
    }
    for (std::size_t i = 0; i < settings.enumSources; ++i)
    {
        out.Write(SourceName("Enums", i),
                  EnumSource(Chunk(vocabulary.enums, i, settings.enumSources)));
    }
    out.RemoveStale("sources");
}

}  // namespace

void Generate(const Vocabulary& vocabulary, const Settings& settings)
{
    OutputFolder out(settings.out);
    WriteHeaders(vocabulary, settings, out);
    WriteSources(vocabulary, settings, out);
    if (!settings.reference.empty())
    {
        OutputFolder reference(settings.reference);
        WriteReference(vocabulary, reference);
    }
}

}  // namespace schemagen
