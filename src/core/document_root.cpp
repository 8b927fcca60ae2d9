#include "core/document_root.h"

#include <bit>

#include "core/event_firing.h"
#include "core/iso_codes.h"
#include "core/xml_dom_tool.h"
#include "platform/com/failure.h"
#include "platform/url/url.h"

namespace qvr {
namespace {

const char* const copyrightComment = "Copyright (C) QVRCatalog Editor. All rights reserved.";

} // namespace

HRESULT DocumentRoot::readRootAttribute(const char* name, String* value) noexcept {
    return guarded([&] {
        if (!value) return E_POINTER;
        Ref<IXMLDOMElement> root;
        HRESULT hr = requireElement(&root);
        if (hr != S_OK) return hr;
        String read;
        if ((hr = root->getAttribute(name, &read)) == S_OK) *value = std::move(read);
        return hr;
    });
}

HRESULT DocumentRoot::writeLanguage(const String& language) noexcept {
    return guarded([&] {
        if (!isLanguageCode(language)) return report(msgBadLanguageCode);
        Ref<IXMLDOMElement> root;
        HRESULT hr = requireElement(&root);
        if (hr != S_OK) return hr;
        if ((hr = root->setAttribute("xml:lang", language)) != S_OK) return hr;
        if (classInfo().type.events == EventSide::Catalog)
            fireObjectEvent(qvrEventObjectChanged, self(), self(), Variant());
        else
            fireObjectEventTable(qvrEventObjectChanged, self(), self(), Variant());
        return S_OK;
    });
}

HRESULT DocumentRoot::ensureDocument(std::uint32_t message) {
    if (document_) return S_OK;
    HRESULT hr = CreateDOMDocument(&document_);
    if (hr != S_OK || !document_) {
        document_ = nullptr;
        return report(message, FAILED(hr) ? hr : E_FAIL);
    }
    return S_OK;
}

HRESULT DocumentRoot::reportParseFailure(HRESULT status) {
    return reportError(errorSource(), CXMLDOMTool(document_).parseErrorText(), status);
}

HRESULT DocumentRoot::checkSavable(const Variant& target) {
    if (!loadFailed_) return S_OK;
    std::string text = "The document is not saved";
    if (target.vt() == VT_BSTR && !target.str().isEmpty()) text += " to " + target.str().str();
    text += ": its last load failed, so it does not hold the content of a file, and saving it "
            "would replace a file with it. Load or create a document first.";
    return reportError(errorSource(), String(std::move(text)), E_FAIL);
}

HRESULT DocumentRoot::checkRootTag(const char* tag, std::uint32_t message, HRESULT status,
                                   Ref<IXMLDOMElement>* root) {
    HRESULT hr = document_->get_documentElement(root);
    if (hr != S_OK) return hr;
    String name;
    if (FAILED(hr = (*root)->get_tagName(&name))) return hr;
    return name == tag ? S_OK : report(message, status);
}

HRESULT DocumentRoot::writePrologue(const char* productComment) {
    Ref<IXMLDOMNode> declaration, product, copyright;
    HRESULT hr;
    if ((hr = document_->createProcessingInstruction("xml", "version='1.0'", &declaration)) !=
            S_OK ||
        FAILED(hr = document_->appendChild(declaration, nullptr)))
        return hr;
    if ((hr = document_->createComment(productComment, &product)) != S_OK ||
        (hr = document_->createComment(copyrightComment, &copyright)) != S_OK ||
        FAILED(hr = document_->appendChild(product, nullptr)) ||
        FAILED(hr = document_->appendChild(copyright, nullptr)))
        return hr;
    return S_OK;
}

HRESULT DocumentRoot::baseFromDocumentUrl() {
    String url;
    HRESULT hr = document_->get_url(&url);
    if (hr != S_OK) return hr;
    const std::size_t slash = url.view().rfind('/');
    if (slash != std::string_view::npos) baseUrl_ = String(url.view().substr(0, slash + 1));
    return hr;
}

HRESULT DocumentRoot::handOutBaseUrl(String* baseUrl) {
    if (!baseUrl_.isNull() && !url::isUrl(baseUrl_.view())) {
        String converted;
        HRESULT hr = url::pathToUrl(baseUrl_, &converted);
        if (hr != S_OK) return hr;
        baseUrl_ = std::move(converted);
    }
    *baseUrl = baseUrl_;
    return S_OK;
}

void DocumentRoot::closeBaseUrl(std::string_view given) {
    if (!baseUrl_.isEmpty() && !given.empty() && given.back() != '\\' && given.back() != '/')
        baseUrl_ += "/";
}

HRESULT DocumentRoot::versionOf(const String& text, float* version) {
    Variant number;
    HRESULT hr = changeType(&number, Variant(text), LOCALE_NEUTRAL, 0, VT_R8);
    if (hr != S_OK) return hr;
    const auto bits = std::bit_cast<std::uint64_t>(number.r8());
    *version = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    return S_OK;
}

} // namespace qvr
