// The elements of a catalog: its tree, media, order information, contacts and supplier, and the
// reference objects of the files it points at.
#include "binding.h"

namespace qvrpy {

using namespace qvr;

namespace {

void bindTree(py::module_& m) {
    {
        using Self = IQVRCatalogChapter;
        bind<Self>(m, QVR_PROP(name), QVR_PROP(visible), QVR_PROP(desc), QVR_REF(images),
                   QVR_REF(link), QVR_REF(documents), QVR_REF(extrinsics));
    }
    {
        using Self = IQVRCatalogPart;
        bind<Self>(m, QVR_PROP(desc), QVR_PROP(name), QVR_PROP(visible), QVR_REF(documents),
                   QVR_REF(images), QVR_REF(link), QVR_PROP(tableRef), QVR_DO(getTable, 0),
                   QVR_REF(classifications), QVR_REF(orderInfo), QVR_DO(setTableLocation),
                   QVR_DO(attachTable), QVR_REF(extrinsics));
    }
    {
        using Self = IQVRCatalogClass;
        bind<Self>(m, QVR_PROP(domain), QVR_PROP(value));
    }
    {
        using Self = IQVRCatalogExtrinsic;
        bind<Self>(m, QVR_PROP(name), QVR_REF(content), QVR_PROP(value));
    }
}

void bindMedia(py::module_& m) {
    {
        using Self = IQVRCatalogURL;
        bind<Self>(m, QVR_PROP(title), QVR_PROP(lang), QVR_PROP(href), QVR_PROP(actuate),
                   QVR_PROP(role), QVR_PROP(show), QVR_PROP(type));
    }
    {
        using Self = IQVRCatalogDocument;
        bind<Self>(m, QVR_PROP(name));
    }
    {
        using Self = IQVRCatalogDocuments;
        bind<Self>(m, QVR_PROP(name));
    }
}

void bindOrder(py::module_& m) {
    {
        using Self = IQVRCatalogOrderInfo;
        bind<Self>(m, QVR_PROP(effDate), QVR_PROP(expDate), QVR_REF(availability));
    }
    {
        using Self = IQVRCatalogCountryCode;
        bind<Self>(m, QVR_PROP(isoCountryCode), QVR_PROP(value));
    }
    {
        using Self = IQVRCatalogOrderTarget;
        bind<Self>(m, QVR_REF(target), QVR_GET(targetType));
    }
    {
        using Self = IQVRCatalogOrderMethod;
        bind<Self>(m, QVR_PROP(orderProtocol), QVR_REF(orderTarget));
    }
}

void bindContact(py::module_& m) {
    {
        using Self = IQVRCatalogStreet;
        bind<Self>(m, QVR_PROP(value));
    }
    {
        using Self = IQVRCatalogPostalAddress;
        bind<Self>(m, QVR_PROP(city), QVR_PROP(country), QVR_PROP(state), QVR_PROP(postalCode));
    }
    {
        using Self = IQVRCatalogTelephoneNumber;
        bind<Self>(m, QVR_PROP(countryCode), QVR_PROP(areaOrCityCode), QVR_PROP(number),
                   QVR_PROP(extension));
    }
    {
        using Self = IQVRCatalogPhone;
        bind<Self>(m, QVR_REF(telephoneNumber), QVR_PROP(name));
    }
    {
        using Self = IQVRCatalogFax;
        bind<Self>(m, QVR_REF(telephoneNumber), QVR_PROP(name));
    }
    {
        using Self = IQVRCatalogEmail;
        bind<Self>(m, QVR_PROP(value), QVR_PROP(name));
    }
    {
        using Self = IQVRCatalogAddress;
        bind<Self>(m, QVR_PROP(name), QVR_PROP(isoCountryCode), QVR_REF(postalAddress),
                   QVR_REF(email), QVR_REF(phone), QVR_REF(fax));
    }
}

void bindSupplier(py::module_& m) {
    {
        using Self = IQVRCatalogSupplierID;
        bind<Self>(m, QVR_PROP(domain), QVR_PROP(value));
    }
    {
        using Self = IQVRCatalogECommerceCenterID;
        bind<Self>(m, QVR_PROP(domain), QVR_PROP(value));
    }
    {
        using Self = IQVRCatalogSupplierLocation;
        bind<Self>(m, QVR_REF(address), QVR_REF(orderMethods));
    }
    {
        using Self = IQVRCatalogSupplier;
        bind<Self>(m, QVR_PROP(name), QVR_PROP(desc), QVR_REF(images), QVR_REF(link),
                   QVR_REF(documents), QVR_REF(supplierIDs), QVR_REF(eCommerceCenterIDs));
    }
    {
        using Self = IQVRCatalogReference;
        bind<Self>(m, QVR_REF(owner), QVR_GET(kind), QVR_PROP(url), QVR_GET(baseUrl),
                   QVR_GET(absoluteUrl), QVR_GET(fileName), QVR_GET(extension), QVR_GET(directory),
                   QVR_DO(moveTo), QVR_DO(copyTo), QVR_GET(object));
    }
}

} // namespace

void bindContentClasses(py::module_& m) {
    bindTree(m);
    bindMedia(m);
    bindOrder(m);
    bindContact(m);
    bindSupplier(m);
}

} // namespace qvrpy
