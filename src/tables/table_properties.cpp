// The table root's own attributes and single children: address, base, language, description,
// fix column, version, foot note, extrinsics, and the unique column.
#include "core/accessors.h"
#include "core/singleton_tool.h"
#include "platform/com/failure.h"
#include "platform/url/url.h"
#include "tables/table.h"

namespace qvr {

HRESULT CQVRCatalogTable::get_xml(String* xml) {
    return guarded([&] {
        if (!xml) return E_POINTER;
        *xml = String();
        HRESULT hr = requireDocument();
        return hr == S_OK ? document_->get_xml(xml) : hr;
    });
}

HRESULT CQVRCatalogTable::get_url(Variant* url) {
    if (!url) return E_POINTER;
    return guarded([&] {
        *url = url_;
        return S_OK;
    });
}

HRESULT CQVRCatalogTable::put_url(const Variant& url) {
    return guarded([&] {
        url_ = url;
        return S_OK;
    });
}

HRESULT CQVRCatalogTable::get_uniqueColumn(Ref<IQVRTableUniqueColumn>* column) {
    return guarded([&] {
        if (!column) return E_POINTER;
        *column = nullptr;
        if (!element_) return notInitialized();
        return accessors::wrapSelected(element_, "ColumnUnique", self(), self(), column);
    });
}

HRESULT CQVRCatalogTable::putClearableRootAttribute(const char* name,
                                                    const String& value) noexcept {
    return guarded([&] {
        if (!element_) return notInitialized();
        HRESULT hr =
            value.isEmpty() ? element_->removeAttribute(name) : element_->setAttribute(name, value);
        if (hr == S_OK) fire(qvrEventObjectChanged, self(), Variant());
        return hr == S_FALSE ? S_OK : hr; // nothing there to remove: nothing to tell
    });
}

HRESULT CQVRCatalogTable::get_version(float* version) {
    return guarded([&] {
        if (!version) return E_POINTER;
        String text;
        HRESULT hr = readRootAttribute("version", &text);
        return hr == S_OK ? versionOf(text, version) : hr;
    });
}

HRESULT CQVRCatalogTable::get_baseUrl(String* baseUrl) {
    return guarded([&] {
        if (!baseUrl) return E_POINTER;
        HRESULT hr = requireDocument();
        return hr == S_OK ? handOutBaseUrl(baseUrl) : hr;
    });
}

HRESULT CQVRCatalogTable::put_baseUrl(const String& baseUrl) {
    return guarded([&] {
        HRESULT hr = requireDocument();
        if (hr != S_OK) return hr;
        if (url::isUrl(baseUrl.view())) {
            baseUrl_ = baseUrl;
        } else {
            // A path that can't be converted leaves the old base, and its status is the answer.
            String converted;
            if ((hr = url::pathToUrl(baseUrl, &converted)) == S_OK) baseUrl_ = std::move(converted);
        }
        closeBaseUrl(baseUrl.view());
        return hr;
    });
}

HRESULT CQVRCatalogTable::get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) {
    return guarded([&] {
        if (!extrinsics) return E_POINTER;
        *extrinsics = nullptr;
        if (!element_) return notInitialized();
        return accessors::wrapSelected(element_, "Extrinsics", self(), self(), extrinsics);
    });
}

HRESULT CQVRCatalogTable::putref_extrinsics(IQVRCatalogObject* extrinsics) {
    return guarded([&] {
        if (!element_) return notInitialized();
        Ref<IXMLDOMNode> present;
        HRESULT hr = element_->selectSingleNode("Extrinsics", &present);
        if (FAILED(hr)) return report(msgTableNotInitialized, hr);
        SingletonTool tool(element_);
        Ref<IQVRCatalogObject> placed;
        if (present && extrinsics)
            hr = tool.replaceSingleton(self(), self(), "Extrinsics", extrinsics, &placed);
        else if (present)
            hr = tool.removeNode(present);
        else if (extrinsics) // right behind the unique column, or first without one
            hr = tool.insertSingletonAfter(self(), self(), "ColumnUnique", extrinsics, &placed);
        if (FAILED(hr)) return report(msgTableNotInitialized, hr);
        fire(qvrEventObjectChanged, self(), Variant());
        return S_OK;
    });
}

HRESULT CQVRCatalogTable::get_footNote(String* footNote) {
    return guarded([&] {
        if (!footNote) return E_POINTER;
        if (!element_) return report(msgObjectNotInitialized);
        Ref<IXMLDOMNode> node;
        HRESULT hr = element_->selectSingleNode("FootNote", &node);
        if (hr != S_OK) return hr;
        String text;
        if ((hr = node->get_text(&text)) == S_OK) *footNote = std::move(text);
        return hr;
    });
}

HRESULT CQVRCatalogTable::put_footNote(const String& footNote) {
    return guarded([&] {
        if (!element_) return report(msgObjectNotInitialized);
        Ref<IXMLDOMNode> node;
        HRESULT hr = element_->selectSingleNode("FootNote", &node);
        if (FAILED(hr)) return hr;
        CXMLDOMTool tool(element_);
        if (node && !footNote.isEmpty()) {
            hr = node->put_text(footNote);
        } else if (node) {
            hr = tool.removeNode(node);
        } else if (!footNote.isEmpty()) {
            Ref<IXMLDOMElement> created;
            if (!tool.ownerDocument()) return E_FAIL;
            if ((hr = tool.ownerDocument()->createElement("FootNote", &created)) != S_OK) return hr;
            if (FAILED(hr = created->put_text(footNote))) return hr;
            hr = tool.insertNode(created, nullptr);
        }
        if (FAILED(hr)) return hr;
        fire(qvrEventObjectChanged, self(), Variant()); // told also when nothing changed
        return S_OK;
    });
}

} // namespace qvr
