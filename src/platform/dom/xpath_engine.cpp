#include "platform/dom/xpath_engine.h"

#include <list>
#include <unordered_map>
#include <utility>

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <qvr/dom.h>

#include "platform/com/error_report.h"
#include "platform/dom/quiet_errors.h"
#include "platform/dom/tree.h"

namespace qvr::dom {
namespace {

constexpr std::size_t kCacheCapacity = 256;

// Compiled expressions by their text, most recently used first. Compiled expressions do not
// depend on a document, so one cache serves every document of the thread.
class CompiledCache {
public:
    CompiledCache() = default;
    CompiledCache(const CompiledCache&) = delete;
    CompiledCache& operator=(const CompiledCache&) = delete;
    ~CompiledCache() {
        for (auto& entry : order_) xmlXPathFreeCompExpr(entry.second);
    }

    // The compiled form of `expression`, or null when it is malformed.
    xmlXPathCompExprPtr get(xmlXPathContextPtr context, const std::string& expression) {
        if (auto found = byText_.find(expression); found != byText_.end()) {
            order_.splice(order_.begin(), order_, found->second);
            return found->second->second;
        }
        xmlXPathCompExprPtr compiled =
            xmlXPathCtxtCompile(context, reinterpret_cast<const xmlChar*>(expression.c_str()));
        if (!compiled) return nullptr;
        try {
            order_.emplace_front(expression, compiled);
        } catch (...) {
            xmlXPathFreeCompExpr(compiled);
            throw;
        }
        byText_[expression] = order_.begin();
        if (order_.size() > kCacheCapacity) {
            byText_.erase(order_.back().first);
            xmlXPathFreeCompExpr(order_.back().second);
            order_.pop_back();
        }
        return compiled;
    }

private:
    using Entry = std::pair<std::string, xmlXPathCompExprPtr>;
    std::list<Entry> order_;
    std::unordered_map<std::string, std::list<Entry>::iterator> byText_;
};

CompiledCache& cache() {
    thread_local CompiledCache instance;
    return instance;
}

// The report of a selection that selects nothing because it cannot: E_FAIL.
HRESULT refuse(const std::string& expression, const char* why, const QuietErrors* quiet) {
    std::string text = "The selection \"" + expression + "\" " + why;
    if (const CapturedError* error = quiet ? quiet->first() : nullptr;
        error && !error->message.empty())
        text += ": " + error->message;
    text += ".";
    return reportError({"XMLDOM.Node", IXMLDOMNode::iid}, String(std::move(text)), E_FAIL);
}

} // namespace

HRESULT XPathEngine::select(Tree& tree, xmlNodePtr context, const std::string& expression,
                            bool firstOnly, std::vector<xmlNodePtr>* nodes) {
    nodes->clear();
    if (expression.empty() || expression.find('\0') != std::string::npos)
        return refuse(expression.c_str(), "is malformed", nullptr);
    QuietErrors quiet;
    xmlXPathContextPtr xpath = tree.xpathContext();
    xmlXPathCompExprPtr compiled = cache().get(xpath, expression);
    if (!compiled) return refuse(expression, "is malformed", &quiet);
    xpath->node = context;
    xpath->doc = context->doc;
    xpath->contextSize = -1;
    xpath->proximityPosition = -1;
    xmlXPathObjectPtr result = xmlXPathCompiledEval(compiled, xpath);
    xpath->node = nullptr;
    if (!result) return refuse(expression, "cannot be evaluated", &quiet);
    HRESULT status = S_OK;
    if (result->type != XPATH_NODESET) {
        status = refuse(expression, "gives a value, not nodes", nullptr);
    } else if (xmlNodeSetPtr set = result->nodesetval) {
        try {
            for (int i = 0; i < set->nodeNr; ++i) {
                xmlNodePtr node = set->nodeTab[i];
                // Namespace nodes are copies made for the result; they have no object.
                if (node->type == XML_NAMESPACE_DECL) continue;
                nodes->push_back(node);
                if (firstOnly) break;
            }
        } catch (...) {
            xmlXPathFreeObject(result);
            throw;
        }
    }
    xmlXPathFreeObject(result);
    return status;
}

} // namespace qvr::dom
