#include "generator/DocumentGenerator.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "generator/Kinds.h"
#include "generator/OccurrenceTree.h"
#include "generator/PartStructure.h"
#include "generator/Random.h"
#include "generator/TransformText.h"
#include "generator/Words.h"

namespace zorvex_bench
{

namespace
{

// Measured; the sizes of documents come out within a few percent.
constexpr std::uint64_t kBytesPerPart = 1350;
constexpr std::uint64_t kBytesPerPartWithOccurrences = 1970;
constexpr std::uint32_t kOccurrencesPerPart = 5;
constexpr std::uint32_t kFewestParts = 15;

constexpr IdNumber kHeaderId = 1;
constexpr IdNumber kApplicationId = 2;
constexpr IdNumber kProductDefId = 3;
constexpr IdNumber kGraphId = 4;
constexpr IdNumber kViewId = 5;
constexpr IdNumber kUnitId = 6;
constexpr IdNumber kFirstMaterialId = 10;
constexpr std::uint32_t kMaterials = 40;
constexpr IdNumber kFirstTransformId = 60;
constexpr std::uint32_t kSharedTransforms = 20;
constexpr IdNumber kFirstPartId = 100;

template <class Table>
auto& Pick(const Table& table, Random& random)
{
    return table[random.Below(static_cast<std::uint32_t>(table.size()))];
}

/// Writes one document, section by section in the order of the schema.
class Generator
{
public:
    Generator(std::ostream& out, const DocumentPlan& plan)
        : m_plan(plan), m_structure(plan.seed, NumberOfParts(plan), kFirstPartId), m_writer(out)
    {
        if (plan.occurrences)
        {
            m_occurrences = MakeOccurrences(m_structure, NumberOfParts() * kOccurrencesPerPart);
        }
    }

    DocumentFacts Write()
    {
        m_writer.Raw("<?xml version=\"1.0\" encoding=\"utf-8\"?>");
        m_writer.Start("ZORVEX");
        m_writer.Declaration("xmlns=\"http://www.zorvex.org/Schemas/ZORVEXSchema\"");
        m_writer.Attribute("time", "06:30:00");
        m_writer.Attribute("schemaVersion", 6);
        m_writer.Attribute("author", "Marie Nováková");
        m_writer.Attribute("date", "2024-03-18");
        m_writer.Attribute("languages", "en de cs ja");
        WriteHeader();
        WriteProductDef();
        WriteUnit();
        ForEachPart(&Generator::WriteText);
        m_writer.End();
        if (!m_writer.Finish())
        {
            throw std::runtime_error("the document could not be written");
        }
        return m_writer.Facts();
    }

private:
    static std::uint32_t NumberOfParts(const DocumentPlan& plan)
    {
        const std::uint64_t each = plan.occurrences ? kBytesPerPartWithOccurrences : kBytesPerPart;
        return std::max(kFewestParts, static_cast<std::uint32_t>(plan.bytes / each));
    }

    std::uint32_t NumberOfParts() const
    {
        return static_cast<std::uint32_t>(m_structure.Parts().size());
    }

    void ForEachPart(void (Generator::*write)(std::uint32_t))
    {
        for (std::uint32_t index = 0; index < NumberOfParts(); ++index)
        {
            (this->*write)(index);
        }
    }

    Random RandomFor(Kind kind, std::uint64_t index) const
    {
        return Random(m_plan.seed, kind, index);
    }

    const Noun& NounOf(std::uint32_t index) const
    {
        Random random = RandomFor(kNameKind, index);
        return Pick(kNouns, random);
    }

    /// Several parts have the same name; their numbers differ.
    std::string NameOf(std::uint32_t index) const
    {
        Random random = RandomFor(kNameKind, index);
        const Noun& noun = Pick(kNouns, random);
        return std::string(noun.english) + " M" + std::to_string(2 * random.Below(20) + 3) + ", " +
               Pick(kPlaces, random) + " " + std::to_string(random.Below(NumberOfParts()));
    }

    void WriteHeader()
    {
        m_writer.Start("Header", kHeaderId);
        m_writer.Uri("traverseRootRefs", m_structure.Parts().front().View());
        m_writer.Start("Application", kApplicationId);
        m_writer.Attribute("version", "4.2");
        m_writer.Attribute("name", "Konstruktion Süd");
        m_writer.End();
        m_writer.End();
    }

    void WriteProductDef()
    {
        m_writer.Start("ProductDef", kProductDefId);
        m_writer.Attribute("name", NameOf(0));
        if (m_plan.occurrences)
        {
            m_writer.Id("defaultProductViewRef", kViewId);
        }
        WriteGraph();
        if (m_plan.occurrences)
        {
            WriteProductView();
        }
        for (std::uint32_t index = 0; index < kMaterials; ++index)
        {
            WriteMaterial(index);
        }
        m_writer.End();
    }

    void WriteGraph()
    {
        m_writer.Start("InstanceGraph", kGraphId);
        m_writer.Id("rootRefs", m_structure.Parts().front().View());
        ForEachPart(&Generator::WriteInstances);
        ForEachPart(&Generator::WriteView);
        ForEachPart(&Generator::WriteMaster);
        ForEachPart(&Generator::WriteRevision);
        for (std::uint32_t index = 0; index < kSharedTransforms; ++index)
        {
            Random random = RandomFor(kInstanceKind, ~std::uint64_t{index});
            m_writer.Start("Transform", kFirstTransformId + index);
            m_writer.Text(GeneralTransform(random));
            m_writer.End();
        }
        m_writer.End();
    }

    void WriteInstances(std::uint32_t index)
    {
        for (std::uint32_t slot = 0; slot < m_structure.Parts()[index].instances; ++slot)
        {
            WriteInstance(index, slot);
        }
    }

    void WriteInstance(std::uint32_t index, std::uint32_t slot)
    {
        const Part& part = m_structure.Parts()[index];
        const std::uint32_t child = m_structure.Child(index, slot);
        Random random = RandomFor(kInstanceKind, part.Instance(slot));
        const std::uint32_t placing = random.Below(100);
        const bool isShared = placing >= 90;

        m_writer.Start("ProductInstance", part.Instance(slot));
        m_writer.Attribute("name", NameOf(child) + ":" + std::to_string(slot + 1));
        m_writer.Uri("partRef", m_structure.Parts()[child].View());
        if (isShared)
        {
            m_writer.Id("transformRef", kFirstTransformId + random.Below(kSharedTransforms));
        }
        const bool hasQuantity = random.Chance(15);
        if (hasQuantity)
        {
            m_writer.Id("unitRef", kUnitId);
        }
        m_writer.Attribute("sequenceNumber", 10 * (slot + 1));
        if (hasQuantity)
        {
            m_writer.Attribute("quantity", std::to_string(random.Below(20)) + ".25");
        }
        if (random.Chance(8))
        {
            WriteReleaseData(part.InstanceData(slot), random);
        }
        if (!isShared)
        {
            WriteTransform(part.Transform(slot), placing < 55, random);
        }
        m_writer.End();
    }

    void WriteTransform(IdNumber id, bool isMove, Random& random)
    {
        m_writer.Start("Transform", id);
        if (isMove)
        {
            m_writer.Attribute("type", "translate");
        }
        m_writer.Text(isMove ? MoveTransform(random) : GeneralTransform(random));
        m_writer.End();
    }

    void WriteReleaseData(IdNumber id, Random& random)
    {
        m_writer.Start("UserData", id);
        m_writer.Attribute("type", "Release");
        WriteValue("Freigabe durch", nullptr, Pick(kPeople, random));
        WriteValue("Paint", nullptr, Pick(kColours, random));
        m_writer.End();
    }

    void WriteValue(const char* title, const char* type, std::string_view value)
    {
        m_writer.Start("UserValue");
        m_writer.Attribute("title", title);
        if (type != nullptr)
        {
            m_writer.Attribute("type", type);
        }
        m_writer.Attribute("value", value);
        m_writer.End();
    }

    void WriteView(std::uint32_t index)
    {
        const Part& part = m_structure.Parts()[index];
        Random random = RandomFor(kViewKind, index);
        const bool isAssembly = part.instances != 0;

        m_writer.Start("ProductRevisionView", part.View());
        m_writer.Attribute("name", NameOf(index));
        if (isAssembly)
        {
            std::vector<IdNumber> instances;
            for (std::uint32_t slot = 0; slot < part.instances; ++slot)
            {
                instances.push_back(part.Instance(slot));
            }
            m_writer.Ids("instanceRefs", instances);
        }
        m_writer.Uri("revisionRef", part.Revision());
        m_writer.Attribute("type", isAssembly ? "assembly" : "solid");
        if (!isAssembly)
        {
            m_writer.Id("materialRef", kFirstMaterialId + random.Below(kMaterials));
        }
        if (random.Chance(60))
        {
            m_writer.Start("Bound", part.Bound());
            m_writer.Attribute("values", BoxNumbers(random));
            m_writer.End();
        }
        m_writer.End();
    }

    void WriteMaster(std::uint32_t index)
    {
        const Part& part = m_structure.Parts()[index];
        const Noun& noun = NounOf(index);
        Random random = RandomFor(kMasterKind, index);

        m_writer.Start("Product", part.Master());
        m_writer.Attribute("name", NameOf(index));
        if (part.hasText)
        {
            m_writer.Uri("nameRef", part.Text());
        }
        m_writer.Attribute("source", random.Chance(60) ? "make" : "buy");
        m_writer.Attribute("productId",
                           std::string(noun.code) + "-" + std::to_string(100000 + index));
        if (random.Chance(70))
        {
            m_writer.Start("Description");
            m_writer.Text(std::string(noun.english) + " as drawn, made of " +
                          Pick(kMetals, random) + ", " + Pick(kColours, random) +
                          "; checked & released by " + Pick(kPeople, random) +
                          ". Handle as the notes <A> to <F> of the drawing say.");
            m_writer.End();
        }
        if (part.hasMasterData)
        {
            m_writer.Start("UserData", part.MasterData());
            m_writer.Attribute("type", "Purchasing");
            WriteValue("Supplier", nullptr, Pick(kPeople, random));
            WriteValue("Lead time in days", "int", std::to_string(1 + random.Below(90)));
            WriteValue("Mass in kg", "real", std::to_string(random.Below(500)) + ".5");
            m_writer.End();
        }
        m_writer.End();
    }

    void WriteRevision(std::uint32_t index)
    {
        const Part& part = m_structure.Parts()[index];
        Random random = RandomFor(kMasterKind, ~std::uint64_t{index});
        m_writer.Start("ProductRevision", part.Revision());
        m_writer.Uri("masterRef", part.Master());
        m_writer.Attribute("revision", std::string(1, static_cast<char>('A' + random.Below(8))));
        if (random.Chance(25))
        {
            m_writer.Attribute("version", 1 + random.Below(9));
        }
        m_writer.End();
    }

    void WriteProductView()
    {
        m_writer.Start("ProductView", kViewId);
        m_writer.Attribute("name", "As delivered");
        m_writer.Attribute("usage", "arrangement");
        m_writer.Attribute("default", "true");
        m_writer.Id("primaryOccurrenceRef", OccurrenceId(0));
        m_writer.Id("rootRefs", OccurrenceId(0));
        for (std::uint32_t index = 0; index < m_occurrences.size(); ++index)
        {
            WriteOccurrence(index);
        }
        m_writer.End();
    }

    IdNumber OccurrenceId(std::uint32_t index) const { return m_structure.EndId() + index; }

    void WriteOccurrence(std::uint32_t index)
    {
        const Occurrence& occurrence = m_occurrences[index];
        m_writer.Start("Occurrence", OccurrenceId(index));
        if (index == 0)
        {
            m_writer.Attribute("name", NameOf(occurrence.part));
            m_writer.Uri("partRef", m_structure.Parts()[occurrence.part].View());
        }
        else
        {
            m_writer.Uris("instanceRefs", Path(index));
        }
        if (occurrence.children != 0)
        {
            std::vector<IdNumber> children;
            for (std::uint32_t child = 0; child < occurrence.children; ++child)
            {
                children.push_back(OccurrenceId(occurrence.firstChild + child));
            }
            m_writer.Ids("occurrenceRefs", children);
        }
        if (index == 0)
        {
            m_writer.Uri("productViewRef", kViewId);
        }
        else
        {
            m_writer.Uri("parentRef", OccurrenceId(occurrence.parent));
        }
        m_writer.End();
    }

    /// The instances from the product down to the occurrence.
    std::vector<IdNumber> Path(std::uint32_t index) const
    {
        std::vector<IdNumber> path;
        for (; index != 0; index = m_occurrences[index].parent)
        {
            path.push_back(m_occurrences[index].instance);
        }
        std::reverse(path.begin(), path.end());
        return path;
    }

    void WriteMaterial(std::uint32_t index)
    {
        Random random = RandomFor(kMaterialKind, index);
        m_writer.Start("Material", kFirstMaterialId + index);
        m_writer.Attribute("name", kMetals[index % kMetals.size()]);
        m_writer.Attribute("diffuse", ColourNumbers(random));
        m_writer.Attribute("shininess", 10 + random.Below(100));
        m_writer.Attribute("ambient", ColourNumbers(random));
        m_writer.End();
    }

    void WriteUnit()
    {
        m_writer.Start("Unit", kUnitId);
        m_writer.Attribute("name", "kilogram");
        m_writer.Start("Kilogram");
        m_writer.End();
        m_writer.End();
    }

    void WriteText(std::uint32_t index)
    {
        const Part& part = m_structure.Parts()[index];
        if (!part.hasText)
        {
            return;
        }
        const Noun& noun = NounOf(index);
        Random random = RandomFor(kTextKind, index);
        const std::string number = " " + std::to_string(random.Below(NumberOfParts()));
        m_writer.Start("Text", part.Text());
        m_writer.Attribute("primary", "en");
        WriteItem(nullptr, noun.english + number);
        WriteItem("de", noun.german + number);
        WriteItem("cs", noun.czech + number);
        WriteItem("ja", noun.japanese + number);
        m_writer.End();
    }

    void WriteItem(const char* language, std::string_view text)
    {
        m_writer.Start("Item");
        if (language != nullptr)
        {
            m_writer.Attribute("language", language);
        }
        m_writer.Text(text);
        m_writer.End();
    }

    DocumentPlan m_plan;
    PartStructure m_structure;
    std::vector<Occurrence> m_occurrences;
    ElementWriter m_writer;
};

}  // namespace

DocumentFacts WriteDocument(std::ostream& out, const DocumentPlan& plan)
{
    return Generator(out, plan).Write();
}

}  // namespace zorvex_bench
