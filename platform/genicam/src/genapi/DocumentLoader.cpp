#include "DocumentLoader.h"

#include "ElementReader.h"
#include "NodeClassTable.h"
#include "NodeLinker.h"
#include "NodeMap.h"
#include "Text.h"
#include "XmlText.h"

#include <GCBase/GCException.h>

#include <pugixml.hpp>

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>

namespace GenApi::Detail
{

namespace
{

constexpr const char* genApiNamespace = "http://www.genicam.org/GenApi/Version_1_1";

constexpr const char* requiredAttributes[] = {
    "ModelName",          "VendorName",         "StandardNameSpace",
    "SchemaMajorVersion", "SchemaMinorVersion", "SchemaSubMinorVersion",
    "MajorVersion",       "MinorVersion",       "SubMinorVersion",
    "ProductGuid",        "VersionGuid"};

class CDocumentLoader final : public INestedNodeSink
{
public:
    CDocumentLoader(const char* text, size_t length, bool suppressStrings)
        : m_text(text)
        , m_length(length)
        , m_suppressStrings(suppressStrings)
    {
    }

    void Load(CNodeMap& map)
    {
        m_map = &map;
        const pugi::xml_node root = Parse();
        CheckRoot(root);
        LoadNodes(root);
        Link();
        RejectCycles();
        for (const auto& node : map.Nodes())
            node->Verify();
    }

    CNode* AddNestedNode(pugi::xml_node element, const GenICam::gcstring& nodeName) override
    {
        return AddNode(element, nodeName, true);
    }

private:
    size_t LineOf(pugi::xml_node element) const
    {
        const ptrdiff_t offset = element.offset_debug();
        if (offset < 0)
            return 0;
        const size_t end = std::min(static_cast<size_t>(offset), m_length);
        return 1 + static_cast<size_t>(std::count(m_text, m_text + end, '\n'));
    }

    pugi::xml_node Parse()
    {
        const std::string characters = CheckCharacters(m_text, m_length);
        if (!characters.empty())
            throw RUNTIME_EXCEPTION("Register description is not well-formed XML: %s", characters.c_str());

        // Fragment mode keeps text outside the root element, so that it can be refused;
        // references are resolved by DecodeTree, which knows only those XML defines.
        const unsigned options =
            (pugi::parse_default | pugi::parse_fragment | pugi::parse_declaration | pugi::parse_doctype) &
            ~pugi::parse_escapes;
        const pugi::xml_parse_result result =
            m_document.load_buffer(m_text, m_length, options, pugi::encoding_utf8);
        if (!result)
        {
            const size_t end = std::min(static_cast<size_t>(std::max<ptrdiff_t>(result.offset, 0)), m_length);
            const size_t line = 1 + static_cast<size_t>(std::count(m_text, m_text + end, '\n'));
            throw RUNTIME_EXCEPTION("Register description is not well-formed XML: %s at line %zu",
                                    result.description(), line);
        }

        pugi::xml_node root;
        for (pugi::xml_node child : m_document.children())
        {
            switch (child.type())
            {
            case pugi::node_element:
                if (root)
                    throw RUNTIME_EXCEPTION(
                        "Register description is not well-formed XML: a second root element "
                        "'%s' at line %zu",
                        child.name(), LineOf(child));
                root = child;
                break;
            case pugi::node_declaration:
                break;
            case pugi::node_doctype:
                throw RUNTIME_EXCEPTION("Register description has a document type declaration, which a "
                                        "register description must not have");
            default:
                throw RUNTIME_EXCEPTION(
                    "Register description is not well-formed XML: text outside the root element");
            }
        }
        if (!root)
            throw RUNTIME_EXCEPTION("Register description is not well-formed XML: it has no root element");
        const std::string problem = DecodeTree(root);
        if (!problem.empty())
            throw RUNTIME_EXCEPTION("Register description is not well-formed XML: %s", problem.c_str());
        return root;
    }

    static void CheckRoot(pugi::xml_node root)
    {
        if (std::strcmp(root.name(), "RegisterDescription") != 0)
            throw RUNTIME_EXCEPTION(
                "Register description has the root element '%s' instead of RegisterDescription", root.name());
        const pugi::xml_attribute xmlns = root.attribute("xmlns");
        if (std::strcmp(xmlns.value(), genApiNamespace) != 0)
            throw RUNTIME_EXCEPTION("Register description is in the namespace '%s' instead of %s",
                                    xmlns.value(), genApiNamespace);
        for (const char* name : requiredAttributes)
            if (!root.attribute(name))
                throw RUNTIME_EXCEPTION("Register description lacks the attribute %s", name);
        const std::optional<int64_t> major = ParseInteger(root.attribute("SchemaMajorVersion").value());
        const std::optional<int64_t> minor = ParseInteger(root.attribute("SchemaMinorVersion").value());
        if (major != 1 || minor != 1)
            throw RUNTIME_EXCEPTION("Register description has schema version %s.%s; this runtime reads 1.1",
                                    root.attribute("SchemaMajorVersion").value(),
                                    root.attribute("SchemaMinorVersion").value());
    }

    // The top-level nodes; nested nodes come through AddNestedNode.
    void LoadNodes(pugi::xml_node root)
    {
        for (const pugi::xml_node element : root.children())
        {
            if (element.type() != pugi::node_element)
                throw RUNTIME_EXCEPTION("Register description holds text between its nodes at line %zu",
                                        LineOf(root));
            const char* name = element.attribute("Name").value();
            if (!IsNodeName(name))
                throw PROPERTY_EXCEPTION("Element '%s' at line %zu has no valid Name, but '%s'",
                                         element.name(), LineOf(element), name);
            AddNode(element, name, false);
        }
    }

    CNode* AddNode(pugi::xml_node element, const GenICam::gcstring& nodeName, bool nested)
    {
        const SNodeClass* nodeClass = FindNodeClass(element.name());
        if (nodeClass == nullptr)
            throw PROPERTY_EXCEPTION("[%s] element '%s' at line %zu is no node class of this runtime",
                                     nodeName.c_str(), element.name(), LineOf(element));
        if (nodeClass->nested != nested)
            throw PROPERTY_EXCEPTION(
                "[%s] %s at line %zu must stand %s", nodeName.c_str(), element.name(), LineOf(element),
                nodeClass->nested ? "inside an Enumeration" : "at the top of the document");

        std::unique_ptr<CNode> owned = nodeClass->make(*m_map, nodeName, element);
        CNode* node = owned.get();
        if (!m_map->AddNode(std::move(owned)))
            throw PROPERTY_EXCEPTION("[%s] is defined twice: at lines %zu and %zu", nodeName.c_str(),
                                     m_lines.at(nodeName), LineOf(element));
        m_lines.emplace(nodeName, LineOf(element));

        CElementReader reader(element, nodeName, m_suppressStrings, *this);
        node->Load(reader);
        reader.RequireAllRead();
        return node;
    }

    void Link()
    {
        CNodeLinker linker(*m_map);
        for (const auto& node : m_map->Nodes())
            node->Link(linker);

        std::vector<CNode*> reads;
        for (const auto& owned : m_map->Nodes())
        {
            CNode* node = owned.get();
            reads.clear();
            node->CollectReads(reads);
            for (CNode* read : reads)
            {
                read->AddDependent(node);
                read->AddParent(node);
            }
            for (CNode* invalidator : node->Invalidators())
                invalidator->AddDependent(node);
            for (CNode* selected : node->Selected())
            {
                node->AddDependent(selected);
                selected->AddSelecting(node);
            }
        }
    }

    // A node that reads itself, directly or through others, would recurse without end.
    void RejectCycles() const
    {
        enum class EState
        {
            unvisited,
            onPath,
            done
        };
        std::unordered_map<const CNode*, EState> state;
        struct SFrame
        {
            const CNode* node;
            std::vector<CNode*> reads;
            size_t next;
        };
        for (const auto& start : m_map->Nodes())
        {
            if (state[start.get()] != EState::unvisited)
                continue;
            std::vector<SFrame> path;
            auto enter = [&](const CNode* node)
            {
                state[node] = EState::onPath;
                SFrame frame{node, {}, 0};
                node->CollectReads(frame.reads);
                path.push_back(std::move(frame));
            };
            enter(start.get());
            while (!path.empty())
            {
                SFrame& top = path.back();
                if (top.next == top.reads.size())
                {
                    state[top.node] = EState::done;
                    path.pop_back();
                    continue;
                }
                const CNode* next = top.reads[top.next++];
                if (state[next] == EState::onPath)
                {
                    std::string circle;
                    auto from = std::find_if(path.begin(), path.end(),
                                             [&](const SFrame& f) { return f.node == next; });
                    for (; from != path.end(); ++from)
                        circle += std::string(from->node->Name().c_str()) + " -> ";
                    circle += next->Name().c_str();
                    throw PROPERTY_EXCEPTION("[%s] depends on itself: %s", next->Name().c_str(),
                                             circle.c_str());
                }
                if (state[next] == EState::unvisited)
                    enter(next);
            }
        }
    }

    const char* m_text;
    size_t m_length;
    bool m_suppressStrings;
    CNodeMap* m_map = nullptr;
    pugi::xml_document m_document;
    std::unordered_map<GenICam::gcstring, size_t> m_lines;
};

} // namespace

std::unique_ptr<CNodeMap> LoadDocument(const char* text, size_t length, CLock* userLock,
                                       const GenICam::gcstring& deviceName, bool suppressStrings)
{
    auto map = std::make_unique<CNodeMap>(userLock, deviceName);
    CDocumentLoader loader(text, length, suppressStrings);
    loader.Load(*map);
    map->SetDocumentText(GenICam::gcstring(text, length));
    return map;
}

} // namespace GenApi::Detail
