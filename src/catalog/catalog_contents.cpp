// What the catalog holds and makes: the singletons of its root, the element factories and the
// lookup by id.
#include "catalog/catalog.h"

#include <qvr/transfer.h>

#include "content/chapter.h"
#include "content/classification.h"
#include "content/contact.h"
#include "content/media.h"
#include "content/order_info.h"
#include "content/order_method.h"
#include "content/part.h"
#include "content/supplier.h"
#include "content/url.h"
#include "core/accessors.h"
#include "core/object_factory.h"
#include "core/singleton_tool.h"
#include "core/value_selection.h"
#include "core/xml_dom_tool.h"
#include "platform/com/failure.h"

namespace qvr {
namespace {

// The groups of the root in the order in which they stand, ahead of the chapters. ActiveXs is
// never written by the model; it only holds its place when present.
constexpr const char* rootGroupOrder[] = {"Desc",     "Images",     "Link",      "Documents",
                                          "ActiveXs", "Extrinsics", "OrderInfo", "Supplier"};

// Whether none of the required texts is null.
template <class... Texts>
bool given(const Texts&... texts) {
    return (!texts.isNull() && ...);
}

} // namespace

// --- Singletons --------------------------------------------------------------------------------

HRESULT CQVRCatalog::getGroup(const char* tag, Ref<IQVRCatalogObject>* group) {
    return guarded([&] {
        if (!group) return E_POINTER;
        *group = nullptr;
        Ref<IXMLDOMElement> root;
        HRESULT hr = requireElement(&root);
        if (hr != S_OK) return hr;
        // Whatever keeps the selection from finding one counts as none there.
        Ref<IXMLDOMNode> node;
        if (root->selectSingleNode(tag, &node) != S_OK) return S_FALSE;
        return createObjectOf(node, self(), self(), group);
    });
}

HRESULT CQVRCatalog::putGroup(const char* tag, IQVRCatalogObject* group) {
    return guarded([&] {
        Ref<IXMLDOMElement> root;
        HRESULT hr = requireElement(&root);
        if (hr != S_OK) return hr;
        Ref<IXMLDOMNode> present;
        if (FAILED(hr = root->selectSingleNode(tag, &present))) return hr;
        SingletonTool tool(root);
        Ref<IQVRCatalogObject> placed;
        if (present && group) {
            hr = tool.replaceSingleton(self(), self(), tag, group, &placed);
        } else if (present) {
            hr = tool.removeNode(present);
        } else if (group) {
            // Right behind the last group ahead of it that stands; Desc is the start, and
            // without it the group goes first.
            const char* after = accessors::lastPresentChild(root, namesBefore(rootGroupOrder, tag),
                                                            rootGroupOrder[0]);
            hr = tool.insertSingletonAfter(self(), self(), after, group, &placed);
        }
        if (FAILED(hr)) return hr;
        fire(qvrEventObjectChanged, self(), Variant());
        return S_OK;
    });
}

HRESULT CQVRCatalog::get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) {
    // Unlike the other groups, a missing one leaves the out value as it was.
    if (!extrinsics) return E_POINTER;
    Ref<IQVRCatalogExtrinsics> found;
    HRESULT hr = getGroup("Extrinsics", &found);
    if (hr == S_OK) *extrinsics = std::move(found);
    return hr;
}

// --- Element factories -------------------------------------------------------------------------

template <class T, class I, class Fill>
HRESULT CQVRCatalog::newElementObject(Ref<I>* out, bool required, Fill&& fill) {
    return guarded([&] {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!required) return E_INVALIDARG;
        if (!initialized()) return notInitialized();
        Ref<T> created;
        HRESULT hr = createNewWrapper<T>(document_, self(), &created);
        if (hr != S_OK) return hr;
        // The object's own setters, in order, up to the first that fails.
        if (FAILED(hr = fill(*created))) return hr;
        *out = created.get();
        return S_OK;
    });
}

HRESULT CQVRCatalog::createChapter(const String& name, Ref<IQVRCatalogChapter>* chapter) {
    return newElementObject<CQVRCatalogChapter>(
        chapter, given(name), [&](CQVRCatalogChapter& created) { return created.fillNew(name); });
}

HRESULT CQVRCatalog::createImage(IQVRCatalogObject* url, Ref<IQVRCatalogImage>* image) {
    return newElementObject<CQVRCatalogImage>(
        image, true, [&](CQVRCatalogImage& created) { return created.appendChild(url, nullptr); });
}

HRESULT CQVRCatalog::createImages(IQVRCatalogObject* image, Ref<IQVRCatalogImages>* images) {
    return newElementObject<CQVRCatalogImages>(images, true, [&](CQVRCatalogImages& created) {
        return created.appendChild(image, nullptr);
    });
}

HRESULT CQVRCatalog::createURL(const String& href, const String& title, const String& language,
                               Ref<IQVRCatalogURL>* url) {
    return newElementObject<CQVRCatalogURL>(
        url, given(href, title, language),
        [&](CQVRCatalogURL& created) { return created.fillNew(href, title, language); });
}

HRESULT CQVRCatalog::createLink(IQVRCatalogObject* url, Ref<IQVRCatalogLink>* link) {
    return newElementObject<CQVRCatalogLink>(
        link, true, [&](CQVRCatalogLink& created) { return created.appendChild(url, nullptr); });
}

HRESULT CQVRCatalog::createDocument(IQVRCatalogObject* url, const String& name,
                                    Ref<IQVRCatalogDocument>* document) {
    return newElementObject<CQVRCatalogDocument>(
        document, given(name), [&](CQVRCatalogDocument& created) {
            HRESULT hr = created.appendChild(url, nullptr);
            return FAILED(hr) ? hr : created.put_name(name);
        });
}

HRESULT CQVRCatalog::createDocuments(IQVRCatalogObject* document, const String& name,
                                     Ref<IQVRCatalogDocuments>* documents) {
    return newElementObject<CQVRCatalogDocuments>(
        documents, given(name), [&](CQVRCatalogDocuments& created) {
            HRESULT hr = created.appendChild(document, nullptr);
            return FAILED(hr) ? hr : created.put_name(name);
        });
}

HRESULT CQVRCatalog::createPart(const String& name, Ref<IQVRCatalogPart>* part) {
    return newElementObject<CQVRCatalogPart>(
        part, given(name), [&](CQVRCatalogPart& created) { return created.fillNew(name); });
}

HRESULT CQVRCatalog::createClass(const String& domain, const String& value,
                                 Ref<IQVRCatalogClass>* classObject) {
    return newElementObject<CQVRCatalogClass>(classObject, given(domain, value),
                                              [&](CQVRCatalogClass& created) {
                                                  HRESULT hr = created.put_domain(domain);
                                                  return FAILED(hr) ? hr : created.put_value(value);
                                              });
}

HRESULT CQVRCatalog::createClassifications(IQVRCatalogObject* classObject,
                                           Ref<IQVRCatalogClassifications>* classifications) {
    return newElementObject<CQVRCatalogClassifications>(
        classifications, true, [&](CQVRCatalogClassifications& created) {
            return created.appendChild(classObject, nullptr);
        });
}

HRESULT CQVRCatalog::createOrderInfo(const Variant& effDate, const Variant& expDate,
                                     IQVRCatalogObject* availability,
                                     Ref<IQVRCatalogOrderInfo>* orderInfo) {
    return newElementObject<CQVRCatalogOrderInfo>(
        orderInfo, true, [&](CQVRCatalogOrderInfo& created) {
            HRESULT hr;
            if (FAILED(hr = created.put_effDate(effDate)) ||
                FAILED(hr = created.put_expDate(expDate)))
                return hr;
            return created.putref_availability(availability);
        });
}

HRESULT CQVRCatalog::createAvailability(IQVRCatalogObject* countryCode,
                                        Ref<IQVRCatalogAvailability>* availability) {
    return newElementObject<CQVRCatalogAvailability>(
        availability, true, [&](CQVRCatalogAvailability& created) {
            return created.appendChild(countryCode, nullptr);
        });
}

HRESULT CQVRCatalog::createCountryCode(const String& code, const String& value,
                                       Ref<IQVRCatalogCountryCode>* countryCode) {
    return newElementObject<CQVRCatalogCountryCode>(
        countryCode, given(value), [&](CQVRCatalogCountryCode& created) {
            HRESULT hr = created.put_isoCountryCode(code);
            return FAILED(hr) ? hr : created.put_value(value);
        });
}

HRESULT CQVRCatalog::createOrderTarget(IQVRCatalogObject* target,
                                       Ref<IQVRCatalogOrderTarget>* orderTarget) {
    return newElementObject<CQVRCatalogOrderTarget>(
        orderTarget, true,
        [&](CQVRCatalogOrderTarget& created) { return created.putref_target(target); });
}

HRESULT CQVRCatalog::createOrderMethod(IQVRCatalogObject* orderTarget, const String& protocol,
                                       Ref<IQVRCatalogOrderMethod>* orderMethod) {
    return newElementObject<CQVRCatalogOrderMethod>(
        orderMethod, given(protocol), [&](CQVRCatalogOrderMethod& created) {
            HRESULT hr = created.putref_orderTarget(orderTarget);
            return FAILED(hr) ? hr : created.put_orderProtocol(protocol);
        });
}

HRESULT CQVRCatalog::createOrderMethods(IQVRCatalogObject* orderMethod,
                                        Ref<IQVRCatalogOrderMethods>* orderMethods) {
    return newElementObject<CQVRCatalogOrderMethods>(
        orderMethods, true, [&](CQVRCatalogOrderMethods& created) {
            return created.appendChild(orderMethod, nullptr);
        });
}

HRESULT CQVRCatalog::createTelephoneNumber(const String& country, const String& isoCountryCode,
                                           const String& areaOrCityCode, const String& number,
                                           const String& extension,
                                           Ref<IQVRCatalogTelephoneNumber>* telephoneNumber) {
    return newElementObject<CQVRCatalogTelephoneNumber>(
        telephoneNumber, given(isoCountryCode, areaOrCityCode, number, extension),
        [&](CQVRCatalogTelephoneNumber& created) {
            HRESULT hr;
            if (FAILED(hr = created.put_countryCode(isoCountryCode, country)) ||
                FAILED(hr = created.put_areaOrCityCode(areaOrCityCode)) ||
                FAILED(hr = created.put_number(number)))
                return hr;
            return created.put_extension(extension);
        });
}

HRESULT CQVRCatalog::createPhone(const String& name, IQVRCatalogObject* telephoneNumber,
                                 Ref<IQVRCatalogPhone>* phone) {
    return newElementObject<CQVRCatalogPhone>(phone, given(name), [&](CQVRCatalogPhone& created) {
        HRESULT hr = created.putref_telephoneNumber(telephoneNumber);
        return FAILED(hr) ? hr : created.put_name(name);
    });
}

HRESULT CQVRCatalog::createFax(const String& name, IQVRCatalogObject* telephoneNumber,
                               Ref<IQVRCatalogFax>* fax) {
    return newElementObject<CQVRCatalogFax>(fax, given(name), [&](CQVRCatalogFax& created) {
        HRESULT hr = created.putref_telephoneNumber(telephoneNumber);
        return FAILED(hr) ? hr : created.put_name(name);
    });
}

HRESULT CQVRCatalog::createEmail(const String& name, const String& address,
                                 Ref<IQVRCatalogEmail>* email) {
    return newElementObject<CQVRCatalogEmail>(email, given(name, address),
                                              [&](CQVRCatalogEmail& created) {
                                                  HRESULT hr = created.put_value(address);
                                                  return FAILED(hr) ? hr : created.put_name(name);
                                              });
}

HRESULT CQVRCatalog::createStreet(const String& text, Ref<IQVRCatalogStreet>* street) {
    return newElementObject<CQVRCatalogStreet>(
        street, given(text), [&](CQVRCatalogStreet& created) { return created.put_value(text); });
}

HRESULT CQVRCatalog::createPostalAddress(const String& id, const String& city,
                                         const String& country, const String& isoCountryCode,
                                         IQVRCatalogObject* street, const String& state,
                                         const String& postalCode,
                                         Ref<IQVRCatalogPostalAddress>* postalAddress) {
    return newElementObject<CQVRCatalogPostalAddress>(
        postalAddress, given(id, city, country, isoCountryCode, state, postalCode),
        [&](CQVRCatalogPostalAddress& created) {
            HRESULT hr;
            if (FAILED(hr = created.element()->setAttribute("id", id)) ||
                FAILED(hr = created.put_city(city)) ||
                FAILED(hr = created.put_country(isoCountryCode, country)) ||
                FAILED(hr = created.appendChild(street, nullptr)) ||
                FAILED(hr = created.put_state(state)))
                return hr;
            return created.put_postalCode(postalCode);
        });
}

HRESULT CQVRCatalog::createAddress(const String& name, const String& isoCountryCode,
                                   IQVRCatalogObject* postalAddress, IQVRCatalogObject* email,
                                   IQVRCatalogObject* phone, IQVRCatalogObject* fax,
                                   Ref<IQVRCatalogAddress>* address) {
    return newElementObject<CQVRCatalogAddress>(
        address, given(name, isoCountryCode), [&](CQVRCatalogAddress& created) {
            HRESULT hr;
            if (FAILED(hr = created.put_name(name)) ||
                FAILED(hr = created.put_isoCountryCode(isoCountryCode)) ||
                FAILED(hr = created.putref_postalAddress(postalAddress)) ||
                FAILED(hr = created.putref_email(email)) ||
                FAILED(hr = created.putref_phone(phone)))
                return hr;
            return created.putref_fax(fax);
        });
}

HRESULT CQVRCatalog::createSupplierLocation(IQVRCatalogObject* address,
                                            IQVRCatalogObject* orderMethods,
                                            Ref<IQVRCatalogSupplierLocation>* location) {
    return newElementObject<CQVRCatalogSupplierLocation>(
        location, true, [&](CQVRCatalogSupplierLocation& created) {
            HRESULT hr = created.putref_address(address);
            return FAILED(hr) ? hr : created.putref_orderMethods(orderMethods);
        });
}

// A SupplierID or an ECommerceCenterID: its domain, then its value.
template <class T, class I>
HRESULT CQVRCatalog::newDomainValue(const String& domain, const String& value, Ref<I>* id) {
    return newElementObject<T>(id, given(domain, value), [&](T& created) {
        HRESULT hr = created.put_domain(domain);
        return FAILED(hr) ? hr : created.put_value(value);
    });
}

HRESULT CQVRCatalog::createSupplierID(const String& domain, const String& value,
                                      Ref<IQVRCatalogSupplierID>* id) {
    return newDomainValue<CQVRCatalogSupplierID>(domain, value, id);
}

HRESULT CQVRCatalog::createSupplierIDs(IQVRCatalogObject* id, Ref<IQVRCatalogSupplierIDs>* ids) {
    return newElementObject<CQVRCatalogSupplierIDs>(
        ids, true,
        [&](CQVRCatalogSupplierIDs& created) { return created.appendChild(id, nullptr); });
}

HRESULT CQVRCatalog::createECommerceCenterID(const String& domain, const String& value,
                                             Ref<IQVRCatalogECommerceCenterID>* id) {
    return newDomainValue<CQVRCatalogECommerceCenterID>(domain, value, id);
}

HRESULT CQVRCatalog::createECommerceCenterIDs(IQVRCatalogObject* id,
                                              Ref<IQVRCatalogECommerceCenterIDs>* ids) {
    return newElementObject<CQVRCatalogECommerceCenterIDs>(
        ids, true,
        [&](CQVRCatalogECommerceCenterIDs& created) { return created.appendChild(id, nullptr); });
}

HRESULT CQVRCatalog::createSupplier(const String& name, const String& desc,
                                    IQVRCatalogObject* images, IQVRCatalogObject* link,
                                    IQVRCatalogObject* documents, IQVRCatalogObject* supplierIDs,
                                    IQVRCatalogObject* eCommerceCenterIDs,
                                    IQVRCatalogObject* location,
                                    Ref<IQVRCatalogSupplier>* supplier) {
    return newElementObject<CQVRCatalogSupplier>(
        supplier, given(name, desc), [&](CQVRCatalogSupplier& created) {
            HRESULT hr;
            if (FAILED(hr = created.put_name(name)) || FAILED(hr = created.put_desc(desc)) ||
                FAILED(hr = created.putref_images(images)) ||
                FAILED(hr = created.putref_link(link)) ||
                FAILED(hr = created.putref_documents(documents)) ||
                FAILED(hr = created.putref_supplierIDs(supplierIDs)) ||
                FAILED(hr = created.putref_eCommerceCenterIDs(eCommerceCenterIDs)))
                return hr;
            // The one object a supplier can't do without: null is E_POINTER here.
            return created.appendChild(location, nullptr);
        });
}

HRESULT CQVRCatalog::createExtrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) {
    return newElementObject<CQVRCatalogExtrinsics>(extrinsics, true,
                                                   [](CQVRCatalogExtrinsics&) { return S_OK; });
}

HRESULT CQVRCatalog::createExtrinsic(const String& name, Ref<IQVRCatalogExtrinsic>* extrinsic) {
    return newElementObject<CQVRCatalogExtrinsic>(
        extrinsic, given(name),
        [&](CQVRCatalogExtrinsic& created) { return created.put_name(name); });
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
        Ref<IXMLDOMNode> node;
        if ((hr = selectOneWithValue(root, dom::forms::documentById, id, &node)) != S_OK) return hr;
        return createObjectOf(node, self(), self(), object);
    });
}

// --- Objects handed over -----------------------------------------------------------------------

HRESULT CQVRCatalog::objectFromDataObject(IDataObject* dataObject, Ref<IQVRCatalogObject>* object) {
    return guarded([&] {
        if (!dataObject) return E_INVALIDARG;
        if (!object) return E_POINTER;
        *object = nullptr;
        FORMATETC format;
        format.cfFormat = RegisterClipboardFormat("CF_QVRLOCALPROXY");
        format.tymed = TYMED_ISTREAM;
        STGMEDIUM medium;
        HRESULT hr = dataObject->GetData(&format, &medium);
        if (FAILED(hr)) return hr;
        // A rendering that failed leaves the medium empty: there is nothing to read then.
        Ref<IUnknown> unmarshalled;
        hr = medium.pstm ? CoUnmarshalInterface(medium.pstm, IQVRCatalogObject::iid, &unmarshalled)
                         : E_FAIL;
        ReleaseStgMedium(&medium);
        if (hr != S_OK) return hr;
        *object = query<IQVRCatalogObject>(unmarshalled);
        return *object ? S_OK : E_NOINTERFACE;
    });
}

} // namespace qvr
