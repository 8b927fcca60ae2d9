// What the catalog holds and makes: the singletons of its root, the element factories and the
// lookup by id.
#include <iterator>

#include "catalog/catalog.h"
#include "content/chapter.h"
#include "content/order_info.h"
#include "content/order_method.h"
#include "content/part.h"
#include "content/supplier.h"
#include "core/accessors.h"
#include "core/object_factory.h"
#include "core/value_selection.h"
#include "core/xml_dom_tool.h"

namespace qvr {
namespace {

// The singletons of the root in the order they stand in, ahead of the chapters. ActiveXs is
// never written here; it only holds its place when a document brings one.
constexpr const char* rootOrder[] = {"Desc",     "Images",     "Link",      "Documents",
                                     "ActiveXs", "Extrinsics", "OrderInfo", "Supplier"};

// Runs `steps` in order until one fails, and answers the status of the last one run.
template <class... Steps>
HRESULT inOrder(Steps&&... steps) {
    HRESULT hr = S_OK;
    (void)(... && (hr = steps(), SUCCEEDED(hr)));
    return hr;
}

// appendChild without a use for the inserted object.
HRESULT append(IQVRCatalogObject* parent, IQVRCatalogObject* child) {
    Ref<IQVRCatalogObject> inserted;
    return parent->appendChild(child, &inserted);
}

} // namespace

// --- Singletons --------------------------------------------------------------------------------

HRESULT CQVRCatalog::getSingletonObject(const char* tag, Ref<IQVRCatalogObject>* object,
                                        bool clearWhenAbsent) {
    if (!initialized()) return notInitialized();
    Ref<IXMLDOMElement> root;
    HRESULT hr = requireElement(&root);
    if (hr != S_OK) return hr;
    Ref<IXMLDOMNode> node;
    if ((hr = root->selectSingleNode(tag, &node)) != S_OK) {
        if (!clearWhenAbsent) return hr;
        *object = nullptr;
        return S_FALSE;
    }
    return CXMLDOMTool(node).createObject(self(), self(), object);
}

HRESULT CQVRCatalog::get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) {
    return getSingleton("Extrinsics", extrinsics, false);
}

HRESULT CQVRCatalog::putSingleton(const char* tag, IQVRCatalogObject* object) {
    return guarded([&] {
        if (!initialized()) return notInitialized();
        Ref<IXMLDOMElement> root;
        HRESULT hr = requireElement(&root);
        if (hr != S_OK) return hr;
        Ref<IXMLDOMNode> present;
        if (FAILED(hr = root->selectSingleNode(tag, &present))) return hr;
        CXMLDOMTool tool(root);
        Ref<IQVRCatalogObject> placed; // the catalog hands back nothing
        if (present && object) {
            hr = tool.replaceSingletonDirect(self(), self(), tag, object, &placed);
        } else if (present) {
            hr = tool.removeNode(present);
        } else if (object) {
            // Right behind the last predecessor that stands here. Desc is where the search
            // starts, not looked for: without one the newcomer goes first.
            const char* after = rootOrder[0];
            for (const char* name : namesBefore(rootOrder, tag).subspan(1)) {
                Ref<IXMLDOMNode> found;
                if (root->selectSingleNode(name, &found) == S_OK) after = name;
            }
            hr = tool.insertSingletonAfterDirect(self(), self(), after, object, &placed);
        } else {
            hr = S_OK;
        }
        if (hr == S_OK) sinks_.deliver(qvrEventObjectChanged, self(), Variant());
        return hr;
    });
}

// --- Element factories -------------------------------------------------------------------------

template <class T, class I, class Fill>
HRESULT CQVRCatalog::createFilled(bool requiredGiven, Ref<I>* out, Fill&& fill) {
    return guarded([&] {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!requiredGiven) return E_INVALIDARG;
        if (!initialized()) return notInitialized();
        Ref<T> created;
        HRESULT hr = createNewWrapper<T>(document_, self(), &created);
        if (hr == S_OK) hr = fill(*created);
        if (FAILED(hr)) return hr;
        *out = created.get();
        return S_OK;
    });
}

HRESULT CQVRCatalog::createChapter(const String& name, Ref<IQVRCatalogChapter>* chapter) {
    return createFilled<CQVRCatalogChapter>(!name.isNull(), chapter,
                                            [&](CQVRCatalogChapter& c) { return c.fillNew(name); });
}

HRESULT CQVRCatalog::createPart(const String& name, Ref<IQVRCatalogPart>* part) {
    return createFilled<CQVRCatalogPart>(!name.isNull(), part,
                                         [&](CQVRCatalogPart& p) { return p.fillNew(name); });
}

HRESULT CQVRCatalog::createOrderInfo(const Variant& effDate, const Variant& expDate,
                                     IQVRCatalogObject* availability,
                                     Ref<IQVRCatalogOrderInfo>* orderInfo) {
    return createFilled<CQVRCatalogOrderInfo>(true, orderInfo, [&](CQVRCatalogOrderInfo& o) {
        return inOrder([&] { return o.put_effDate(effDate); },
                       [&] { return o.put_expDate(expDate); },
                       [&] { return o.putref_availability(availability); });
    });
}

HRESULT CQVRCatalog::createAvailability(IQVRCatalogObject* countryCode,
                                        Ref<IQVRCatalogAvailability>* availability) {
    return createFilled<CQVRCatalogAvailability>(
        true, availability, [&](CQVRCatalogAvailability& a) { return append(&a, countryCode); });
}

HRESULT CQVRCatalog::createCountryCode(const String& code, const String& value,
                                       Ref<IQVRCatalogCountryCode>* countryCode) {
    return createFilled<CQVRCatalogCountryCode>(
        !value.isNull(), countryCode, [&](CQVRCatalogCountryCode& c) {
            return inOrder([&] { return c.put_isoCountryCode(code); },
                           [&] { return c.put_value(value); });
        });
}

HRESULT CQVRCatalog::createOrderTarget(IQVRCatalogObject* target,
                                       Ref<IQVRCatalogOrderTarget>* orderTarget) {
    return createFilled<CQVRCatalogOrderTarget>(
        true, orderTarget, [&](CQVRCatalogOrderTarget& t) { return t.putref_target(target); });
}

HRESULT CQVRCatalog::createOrderMethod(IQVRCatalogObject* orderTarget, const String& protocol,
                                       Ref<IQVRCatalogOrderMethod>* orderMethod) {
    return createFilled<CQVRCatalogOrderMethod>(
        !protocol.isNull(), orderMethod, [&](CQVRCatalogOrderMethod& m) {
            return inOrder([&] { return m.putref_orderTarget(orderTarget); },
                           [&] { return m.put_orderProtocol(protocol); });
        });
}

HRESULT CQVRCatalog::createOrderMethods(IQVRCatalogObject* orderMethod,
                                        Ref<IQVRCatalogOrderMethods>* orderMethods) {
    return createFilled<CQVRCatalogOrderMethods>(
        true, orderMethods, [&](CQVRCatalogOrderMethods& m) { return append(&m, orderMethod); });
}

HRESULT CQVRCatalog::createSupplierLocation(IQVRCatalogObject* address,
                                            IQVRCatalogObject* orderMethods,
                                            Ref<IQVRCatalogSupplierLocation>* location) {
    return createFilled<CQVRCatalogSupplierLocation>(
        true, location, [&](CQVRCatalogSupplierLocation& l) {
            return inOrder([&] { return l.putref_address(address); },
                           [&] { return l.putref_orderMethods(orderMethods); });
        });
}

namespace {
// A SupplierID or ECommerceCenterID: the domain, then the value.
template <class T>
auto fillDomainValue(const String& domain, const String& value) {
    return [&domain, &value](T& id) {
        return inOrder([&] { return id.put_domain(domain); }, [&] { return id.put_value(value); });
    };
}
} // namespace

HRESULT CQVRCatalog::createSupplierID(const String& domain, const String& value,
                                      Ref<IQVRCatalogSupplierID>* id) {
    return createFilled<CQVRCatalogSupplierID>(
        !domain.isNull() && !value.isNull(), id,
        fillDomainValue<CQVRCatalogSupplierID>(domain, value));
}

HRESULT CQVRCatalog::createSupplierIDs(IQVRCatalogObject* id, Ref<IQVRCatalogSupplierIDs>* ids) {
    return createFilled<CQVRCatalogSupplierIDs>(
        true, ids, [&](CQVRCatalogSupplierIDs& list) { return append(&list, id); });
}

HRESULT CQVRCatalog::createECommerceCenterID(const String& domain, const String& value,
                                             Ref<IQVRCatalogECommerceCenterID>* id) {
    return createFilled<CQVRCatalogECommerceCenterID>(
        !domain.isNull() && !value.isNull(), id,
        fillDomainValue<CQVRCatalogECommerceCenterID>(domain, value));
}

HRESULT CQVRCatalog::createECommerceCenterIDs(IQVRCatalogObject* id,
                                              Ref<IQVRCatalogECommerceCenterIDs>* ids) {
    return createFilled<CQVRCatalogECommerceCenterIDs>(
        true, ids, [&](CQVRCatalogECommerceCenterIDs& list) { return append(&list, id); });
}

HRESULT CQVRCatalog::createSupplier(const String& name, const String& desc,
                                    IQVRCatalogObject* images, IQVRCatalogObject* link,
                                    IQVRCatalogObject* documents, IQVRCatalogObject* supplierIDs,
                                    IQVRCatalogObject* eCommerceCenterIDs,
                                    IQVRCatalogObject* location,
                                    Ref<IQVRCatalogSupplier>* supplier) {
    return createFilled<CQVRCatalogSupplier>(
        !name.isNull() && !desc.isNull(), supplier, [&](CQVRCatalogSupplier& s) {
            return inOrder([&] { return s.put_name(name); }, [&] { return s.put_desc(desc); },
                           [&] { return s.putref_images(images); },
                           [&] { return s.putref_link(link); },
                           [&] { return s.putref_documents(documents); },
                           [&] { return s.putref_supplierIDs(supplierIDs); },
                           [&] { return s.putref_eCommerceCenterIDs(eCommerceCenterIDs); },
                           [&] { return append(&s, location); });
        });
}

// --- Lookup ------------------------------------------------------------------------------------

HRESULT CQVRCatalog::findById(const String& id, Ref<IQVRCatalogObject>* object) {
    return guarded([&] {
        // Meant for GUID texts: anything shorter is refused unsearched.
        if (id.isNull() || id.length() < 35) return E_INVALIDARG;
        if (!object) return E_POINTER;
        *object = nullptr;
        Ref<IXMLDOMElement> root;
        HRESULT hr = requireElement(&root);
        if (hr != S_OK) return hr;
        String rootId;
        if (root->getAttribute("id", &rootId) == S_OK && rootId.equalsIgnoreCase(id.view())) {
            *object = self();
            return S_OK;
        }
        // The object's parent is the catalog, wherever the element stands.
        Ref<IXMLDOMNode> node;
        if ((hr = selectOneWithValue(root, "//*[@id = '", id, "']", &node)) != S_OK) return hr;
        return CXMLDOMTool(node).createObject(self(), self(), object);
    });
}

} // namespace qvr
