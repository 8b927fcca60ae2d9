#include "core/xml_dom_tool.h"

#include <cstdio>
#include <string>

#include "platform/com/messages.h"

namespace qvr {

CXMLDOMTool::CXMLDOMTool(IXMLDOMNode* node) : node_(node) {
    // A document has no owner document: it is its own, so that a tool around it can make
    // elements and read its errors. (Asked in this order, the common case costs no cast.)
    if (node_ && node_->get_ownerDocument(&ownerDocument_) != S_OK)
        ownerDocument_ = query<IXMLDOMDocument>(node);
}

HRESULT CXMLDOMTool::linkChild(IXMLDOMNode* node, IQVRCatalogObject* child,
                               IQVRCatalogObject* catalog, IQVRCatalogObject* parent) {
    HRESULT hr = child->putref_catalog(catalog);
    if (hr != E_OUTOFMEMORY) hr = child->putref_parentNode(parent);
    if (hr != E_OUTOFMEMORY) return S_OK;
    node_->removeChild(node, nullptr);
    return hr;
}

// --- Plain elements ---------------------------------------------------------------------------

HRESULT CXMLDOMTool::appendNewElement(const String& tag, Ref<IXMLDOMElement>* element) {
    if (!element) return E_POINTER;
    *element = nullptr;
    if (!node_ || !ownerDocument_) return E_FAIL;
    Ref<IXMLDOMElement> created;
    HRESULT hr = ownerDocument_->createElement(tag, &created);
    if (hr != S_OK) return hr;
    if (FAILED(hr = node_->appendChild(created, nullptr))) return hr;
    *element = std::move(created);
    return S_OK;
}

HRESULT CXMLDOMTool::insertNode(IXMLDOMNode* node, IXMLDOMNode* reference) {
    if (!node_) return E_FAIL;
    return node_->insertBefore(node, reference, nullptr);
}

HRESULT CXMLDOMTool::removeNode(IXMLDOMNode* child) {
    if (!node_) return E_FAIL;
    return node_->removeChild(child, nullptr);
}

// --- Texts ------------------------------------------------------------------------------------

String CXMLDOMTool::parseErrorText() const {
    if (!ownerDocument_) return String("");
    Ref<IXMLDOMParseError> error;
    if (ownerDocument_->get_parseError(&error) != S_OK || !error) return String("");
    std::int32_t code = 0, filePosition = 0, line = 0, linePosition = 0;
    String reason, source, url;
    error->get_errorCode(&code);
    error->get_filepos(&filePosition);
    error->get_line(&line);
    error->get_linepos(&linePosition);
    error->get_reason(&reason);
    error->get_srcText(&source);
    error->get_url(&url);
    const std::string format(messageText(msgXmlParseError));
    const long lineNumber = line, position = linePosition;
    const unsigned long status = static_cast<std::uint32_t>(code);
    const int length = std::snprintf(nullptr, 0, format.c_str(), reason.c_str(), url.c_str(),
                                     lineNumber, position, status, source.c_str());
    if (length < 0) return String("");
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), reason.c_str(), url.c_str(), lineNumber,
                  position, status, source.c_str());
    text.resize(static_cast<std::size_t>(length));
    return String(std::move(text));
}

} // namespace qvr
