#include "core/object_frame.h"

#include "core/child_tool.h"
#include "core/event_firing.h"
#include "core/ids.h"
#include "core/object_factory.h"
#include "core/row_tool.h"
#include "platform/com/failure.h"

namespace qvr {
namespace {

bool keepsOwnKeyText(KeyFamily family) {
    return family == KeyFamily::WrapperGuid || family == KeyFamily::AttributeElseGuid;
}

} // namespace

ObjectFrame::ObjectFrame(const ClassInfo& info, const IID& iid) : ObjectCore(info, iid) {
    if (keepsOwnKeyText(info.type.key)) cachedKey_ = newGuidId();
}

ObjectFrame::~ObjectFrame() = default;

HRESULT ObjectFrame::attach(IXMLDOMDocument* document, IXMLDOMNode* node,
                            IQVRCatalogObject* catalog) {
    if (!node) return E_FAIL;
    Ref<IXMLDOMElement> element = query<IXMLDOMElement>(node);
    if (!element) return E_FAIL;
    ownerDocument_ = nullptr;
    element_ = nullptr;
    HRESULT hr = catalog_.set(catalog);
    if (hr != S_OK) return hr;
    ownerDocument_ = document;
    element_ = std::move(element);
    return S_OK;
}

HRESULT ObjectFrame::attachNew(IXMLDOMDocument* document, IQVRCatalogObject* catalog) {
    if (!document) return E_POINTER;
    ownerDocument_ = nullptr;
    element_ = nullptr;
    HRESULT hr = catalog_.set(catalog);
    if (hr != S_OK) return hr;
    hr = document->createElement(classInfo().type.tag, &element_);
    if (hr != S_OK) return hr;
    ownerDocument_ = document;
    return S_OK;
}

HRESULT ObjectFrame::notInitialized() const {
    return report(msgObjectNotInitialized);
}

HRESULT ObjectFrame::workElement(Ref<IXMLDOMElement>* element) {
    *element = element_;
    return S_OK;
}

HRESULT ObjectFrame::catalogObject(Ref<IQVRCatalogObject>* catalog) {
    return catalog_.get(catalog, E_FAIL);
}

HRESULT ObjectFrame::insertChild(ChildTool& tool, IQVRCatalogObject* child, const Variant& position,
                                 Ref<IQVRCatalogObject>* inserted, const ContainerRow& row) {
    return tool.insertChildObject(catalogRef(), self(), child, position, inserted, row.keyAttribute,
                                  row.childSelection);
}

void ObjectFrame::fire(std::int32_t event, IQVRCatalogObject* subject, const Variant& position) {
    if (classInfo().type.events == EventSide::Catalog)
        fireObjectEvent(event, self(), subject, position);
    else
        fireObjectEventTable(event, self(), subject, position);
}

void ObjectFrame::fireChanged() {
    fire(qvrEventObjectChanged, self(), Variant());
}

HRESULT ObjectFrame::keyFromOwnOperation(String*) {
    return E_NOTIMPL;
}

HRESULT ObjectFrame::keyOfRow(String* key) {
    String idref;
    HRESULT hr = element_->getAttribute("idref", &idref);
    if (FAILED(hr)) return hr;
    if (hr == S_FALSE) {
        *key = cachedKey_;
        return S_OK;
    }
    Ref<IXMLDOMElement> row;
    hr = RowTool(element_).findRowById(idref, &row);
    if (hr == S_OK) return row->get_text(key);
    if (hr == S_FALSE) {
        *key = cachedKey_;
        return S_OK;
    }
    return hr;
}

HRESULT ObjectFrame::baseGetKey(String* key) noexcept {
    return guarded([&] {
        if (!key) return E_POINTER;
        if (!initialized()) return notInitialized();
        const ObjectTypeRow& row = classInfo().type;
        switch (row.key) {
        case KeyFamily::Attribute: {
            String value;
            HRESULT hr = element_->getAttribute(row.keyAttribute, &value);
            if (hr == S_OK) *key = std::move(value);
            return hr;
        }
        case KeyFamily::WrapperGuid: *key = cachedKey_; return S_OK;
        case KeyFamily::AttributeElseGuid: {
            Ref<IXMLDOMNode> attribute;
            HRESULT hr = element_->selectSingleNode(String("@") + row.keyAttribute, &attribute);
            if (hr == S_FALSE) {
                *key = cachedKey_;
                return S_OK;
            }
            if (hr != S_OK) return hr;
            String value;
            hr = element_->getAttribute(row.keyAttribute, &value);
            if (hr == S_OK) *key = std::move(value);
            return hr;
        }
        case KeyFamily::OwnOperation: return keyFromOwnOperation(key);
        case KeyFamily::RowKeyOfIdref: return keyOfRow(key);
        case KeyFamily::OwnText: return element_->get_text(key);
        case KeyFamily::Own: break;
        }
        return E_NOTIMPL;
    });
}

bool ObjectFrame::keyFollowsDocument() const noexcept {
    const KeyFamily family = classInfo().type.key;
    return family != KeyFamily::OwnOperation && family != KeyFamily::Own;
}

HRESULT ObjectFrame::cloneElement(VARIANT_BOOL deep, const char* idAttribute,
                                  Ref<IQVRCatalogObject>* clone) {
    if (!clone) return E_POINTER;
    *clone = nullptr;
    if (!initialized()) return notInitialized();
    Ref<IXMLDOMNode> copy;
    HRESULT hr = element_->cloneNode(deep, &copy);
    if (hr != S_OK) return hr;
    if (idAttribute) {
        Ref<IXMLDOMElement> element = query<IXMLDOMElement>(copy);
        if (!element) return E_FAIL;
        hr = element->setAttribute(idAttribute, newGuidId());
        if (hr != S_OK) return hr;
    }
    return createObjectOf(copy, catalogRef(), nullptr, clone);
}

HRESULT ObjectFrame::baseCloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) noexcept {
    return guarded([&] { return cloneElement(deep, nullptr, clone); });
}

HRESULT ObjectFrame::baseGetCatalog(Ref<IQVRCatalogObject>* catalog) noexcept {
    return catalog_.handOut(catalog, E_FAIL);
}

HRESULT ObjectFrame::basePutCatalog(IQVRCatalogObject* catalog) noexcept {
    return guarded([&] { return catalog_.set(catalog); });
}

HRESULT ObjectFrame::baseGetParent(Ref<IQVRCatalogObject>* parent) noexcept {
    return parent_.handOut(parent, S_FALSE);
}

HRESULT ObjectFrame::basePutParent(IQVRCatalogObject* parent) noexcept {
    return guarded([&] { return parent_.set(parent); });
}

} // namespace qvr
