#include "platform/dom/document.h"
#include "platform/dom/xml_text.h"

#include <libxml/dict.h>
#include <libxml/parser.h>
#include <libxml/valid.h>

#include "platform/com/error_report.h"
#include "platform/com/failure.h"
#include "platform/dom/carriable_text.h"
#include "platform/dom/document_io.h"
#include "platform/dom/tree.h"
#include "platform/dom/tree_edit.h"
#include "platform/url/url.h"

namespace qvr::dom {
namespace {

void initialiseLibrary() {
    static const bool done = [] {
        xmlInitParser();
        return true;
    }();
    (void)done;
}

} // namespace

Document::Document() : NodeBase(nullptr, nullptr) {
    initialiseLibrary();
    replaceTree(nullptr);
}

Document::Document(xmlDocPtr doc) : NodeBase(nullptr, nullptr) {
    initialiseLibrary();
    replaceTree(doc);
}

void Document::replaceTree(xmlDocPtr doc) {
    if (!doc) {
        doc = xmlNewDoc(BAD_CAST "1.0");
        if (!doc) throw std::bad_alloc();
        // Names of elements and attributes made here are kept once in a dictionary, as the
        // parser keeps those it reads, instead of once per node.
        doc->dict = xmlDictCreate();
        if (!doc->dict) {
            xmlFreeDoc(doc);
            throw std::bad_alloc();
        }
    }
    std::shared_ptr<Tree> tree;
    try {
        tree = std::make_shared<Tree>(doc, this);
    } catch (...) {
        xmlFreeDoc(doc);
        throw;
    }
    reset(reinterpret_cast<xmlNodePtr>(doc), std::move(tree));
}

HRESULT Document::handOutNew(xmlNodePtr node, Ref<IXMLDOMNode>* out) {
    if (!node) return E_OUTOFMEMORY;
    try {
        *out = tree().wrap(node);
    } catch (...) {
        xmlFreeNode(node);
        throw;
    }
    return S_OK;
}

HRESULT Document::cloneNode(VARIANT_BOOL deep, Ref<IXMLDOMNode>* clone) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (!clone) return E_POINTER;
    *clone = nullptr;
    return guarded([&] {
        xmlDocPtr copy = xmlCopyDoc(doc(), deep != VARIANT_FALSE ? 1 : 0);
        if (!copy) return E_OUTOFMEMORY;
        *clone = makeObject<Document>(copy);
        return S_OK;
    });
}

HRESULT Document::get_documentElement(Ref<IXMLDOMElement>* root) {
    if (!root) return E_POINTER;
    *root = nullptr;
    return guarded([&] {
        xmlNodePtr element = xmlDocGetRootElement(doc());
        if (!element) return S_FALSE;
        *root = query<IXMLDOMElement>(tree().wrap(element));
        return S_OK;
    });
}

HRESULT Document::putref_documentElement(IXMLDOMElement* root) {
    xmlNodePtr node = Handle::nodeOf(root);
    if (!node) return E_INVALIDARG;
    return guarded([&] {
        xmlNodePtr old = xmlDocGetRootElement(doc());
        if (old == node) return S_OK;
        return old ? TreeEdit::replace(xml(), node, old) : TreeEdit::insert(xml(), node, nullptr);
    });
}

HRESULT Document::createElement(const String& tagName, Ref<IXMLDOMElement>* element) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (!element) return E_POINTER;
    *element = nullptr;
    if (tagName.isNull()) return E_INVALIDARG;
    if (holdsNul(tagName) || xmlValidateQName(bytes(tagName), 0) != 0) return E_FAIL;
    return guarded([&] {
        Ref<IXMLDOMNode> node;
        const HRESULT status =
            handOutNew(xmlNewDocNode(doc(), nullptr, bytes(tagName), nullptr), &node);
        *element = query<IXMLDOMElement>(node);
        return status;
    });
}

HRESULT Document::createTextNode(const String& text, Ref<IXMLDOMNode>* node) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (!node) return E_POINTER;
    *node = nullptr;
    if (HRESULT hr = checkCarriable(text, "The text"); hr != S_OK) return hr;
    return guarded([&] {
        return handOutNew(xmlNewDocTextLen(doc(), bytes(text), static_cast<int>(text.byteLength())),
                          node);
    });
}

HRESULT Document::createComment(const String& text, Ref<IXMLDOMNode>* node) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (!node) return E_POINTER;
    *node = nullptr;
    if (HRESULT hr = checkCarriable(text, "The comment", TextKind::Comment); hr != S_OK) return hr;
    return guarded([&] { return handOutNew(xmlNewDocComment(doc(), bytes(text)), node); });
}

HRESULT Document::createProcessingInstruction(const String& target, const String& data,
                                              Ref<IXMLDOMNode>* node) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (!node) return E_POINTER;
    *node = nullptr;
    if (target.isNull()) return E_INVALIDARG;
    if (holdsNul(target) || xmlValidateNCName(bytes(target), 0) != 0) return E_FAIL;
    if (HRESULT hr =
            checkCarriable(data, "The processing instruction", TextKind::ProcessingInstruction);
        hr != S_OK)
        return hr;
    return guarded(
        [&] { return handOutNew(xmlNewDocPI(doc(), bytes(target), bytes(data)), node); });
}

HRESULT Document::failLoad(ParseErrorRecord record, VARIANT_BOOL* ok) {
    lastError_ = std::move(record);
    replaceTree(nullptr);
    url_ = String();
    *ok = VARIANT_FALSE;
    return S_FALSE;
}

HRESULT Document::parseInto(std::string_view text, const String& url, VARIANT_BOOL* ok) {
    ParseErrorRecord error;
    xmlDocPtr parsed = DocumentIO::parse(text, url, &error);
    if (!parsed) return failLoad(std::move(error), ok);
    return takeTree(parsed, url, ok);
}

HRESULT Document::takeTree(xmlDocPtr parsed, const String& url, VARIANT_BOOL* ok) {
    replaceTree(parsed);
    lastError_ = ParseErrorRecord{};
    url_ = url;
    *ok = VARIANT_TRUE;
    return S_OK;
}

HRESULT Document::load(const Variant& source, VARIANT_BOOL* ok) {
    if (!ok) return E_POINTER;
    *ok = VARIANT_FALSE;
    return guarded([&] {
        std::string path;
        const HRESULT located = DocumentIO::pathOf(source, &path);
        if (located == E_ACCESSDENIED)
            return failLoad(DocumentIO::unreadable(E_ACCESSDENIED, source.str()), ok);
        if (FAILED(located)) {
            // The record tells the caller's report what was wrong, as for any failed load.
            lastError_ =
                DocumentIO::unreadable(located, source.vt() == VT_BSTR ? source.str() : String(""));
            lastError_.reason = String("The source is neither a file path nor a file: URL.");
            return located;
        }
        ParseErrorRecord error;
        xmlDocPtr parsed = DocumentIO::parseFile(path, &error);
        if (!parsed) return failLoad(std::move(error), ok);
        return takeTree(parsed, error.url, ok);
    });
}

HRESULT Document::loadXML(const String& xml, VARIANT_BOOL* ok) {
    if (!ok) return E_POINTER;
    *ok = VARIANT_FALSE;
    return guarded([&] { return parseInto(xml.view(), String(), ok); });
}

HRESULT Document::save(const Variant& destination) {
    return guarded([&] {
        const ErrorSource from{"XMLDOM.Document", IXMLDOMDocument::iid};
        std::string path;
        if (HRESULT hr = DocumentIO::pathOf(destination, &path); FAILED(hr)) {
            std::string text = "The document cannot be saved";
            if (destination.vt() != VT_BSTR || destination.str().isEmpty())
                text += ": no file is named to save it to.";
            else if (hr == E_ACCESSDENIED)
                text += " to " + destination.str().str() + ": only files are written.";
            else
                text += " to " + destination.str().str() + ": it is not the path of a file.";
            return reportError(from, String(std::move(text)), hr);
        }
        std::string reason;
        const HRESULT hr = DocumentIO::saveReplacing(path, doc(), &reason);
        if (hr == S_OK) return S_OK;
        return reportError(from, String("The file " + path + " cannot be saved: " + reason), hr);
    });
}

HRESULT Document::get_url(String* url) {
    if (!url) return E_POINTER;
    *url = url_;
    return S_OK;
}

HRESULT Document::get_parseError(Ref<IXMLDOMParseError>* error) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (!error) return E_POINTER;
    *error = nullptr;
    return guarded([&] {
        *error = makeObject<ParseError>(lastError_);
        return S_OK;
    });
}

HRESULT Document::put_async(VARIANT_BOOL) {
    return S_OK;
}

} // namespace qvr::dom

namespace qvr {

HRESULT CreateDOMDocument(Ref<IXMLDOMDocument>* document) {
    if (!document) return E_POINTER;
    *document = nullptr;
    return guarded([&] {
        *document = makeObject<dom::Document>();
        return S_OK;
    });
}

} // namespace qvr
