// Turns the vocabulary of the schemas into the typed headers and sources of the library.

#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "Checker.h"
#include "Generator.h"
#include "Reader.h"

namespace
{

const char kUsage[] =
    "Usage: schemagen --vocabulary DIR --members DIR --object FILE --out DIR\n"
    "                 [--class-sources N] [--enum-sources N] [--reference DIR]\n"
    "\n"
    "Reads DIR/modules.txt and the files it names, checks them, and writes the headers and\n"
    "sources of the classes and enumerations. A fault is told as file:line: cause.\n"
    "\n"
    "  --vocabulary DIR     the vocabulary files\n"
    "  --members DIR        hand-written members of classes\n"
    "  --object FILE        the header of Object, whose operations accessors could hide\n"
    "  --out DIR            where headers and sources go\n"
    "  --class-sources N    into how many sources the classes are split (default 1)\n"
    "  --enum-sources N     the same for the enumerations (default 1)\n"
    "  --reference DIR      write the reference of the vocabulary as HTML there\n";

bool ReadArguments(int argc, char** argv, schemagen::Settings& settings)
{
    for (int i = 1; i < argc; i += 2)
    {
        const std::string name = argv[i];
        if (i + 1 == argc)
        {
            return false;
        }
        const char* value = argv[i + 1];
        if (name == "--vocabulary")
        {
            settings.vocabulary = value;
        }
        else if (name == "--members")
        {
            settings.members = value;
        }
        else if (name == "--object")
        {
            settings.objectHeader = value;
        }
        else if (name == "--out")
        {
            settings.out = value;
        }
        else if (name == "--reference")
        {
            settings.reference = value;
        }
        else if (name == "--class-sources")
        {
            settings.classSources = std::stoul(value);
        }
        else if (name == "--enum-sources")
        {
            settings.enumSources = std::stoul(value);
        }
        else
        {
            return false;
        }
    }
    return !settings.vocabulary.empty() && !settings.objectHeader.empty() && !settings.out.empty();
}

}  // namespace

int main(int argc, char** argv)
{
    schemagen::Settings settings;
    try
    {
        if (!ReadArguments(argc, argv, settings))
        {
            std::fputs(kUsage, stderr);
            return 2;
        }
        schemagen::Vocabulary vocabulary = schemagen::ReadVocabulary(settings.vocabulary);
        schemagen::CheckVocabulary(vocabulary);
        schemagen::Generate(vocabulary, settings);
    }
    catch (const std::exception& fault)
    {
        std::fprintf(stderr, "%s\n", fault.what());
        return 1;
    }
    return 0;
}
