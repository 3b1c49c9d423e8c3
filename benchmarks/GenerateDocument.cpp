// generate_document: writes a document for the benchmarks, or for anyone who needs a large one.
#include <cstdint>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "generator/DocumentGenerator.h"

int main(int argc, char** argv)
{
    CLI::App app("Writes a document for measurements: equal arguments give equal bytes.");
    zorvex_bench::DocumentPlan plan;
    std::string file;
    app.add_option("FILE", file, "The document to write")->required();
    app.add_option("--size", plan.bytes, "About how large it becomes, as 10MB")
        ->transform(CLI::AsSizeValue(true))
        ->capture_default_str();
    app.add_option("--seed", plan.seed, "Another seed gives another document")
        ->capture_default_str();
    app.add_flag("--occurrences", plan.occurrences, "With a product view of occurrences");
    CLI11_PARSE(app, argc, argv);

    try
    {
        std::ofstream out(file, std::ios::binary);
        const zorvex_bench::DocumentFacts facts = zorvex_bench::WriteDocument(out, plan);
        std::cout << facts.bytes << " bytes, " << facts.elements << " elements, "
                  << facts.attributes << " attributes, " << facts.references << " references\n";
        return 0;
    }
    catch (const std::exception& error)
    {
        std::cerr << "generate_document: " << error.what() << '\n';
        return 1;
    }
}
