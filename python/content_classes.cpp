// The elements of a catalog: its tree, media, order information, contacts and supplier, and the
// reference objects of the files it points at.
#include "binding.h"

namespace qvrpy {

using namespace qvr;

namespace {

void bindTree(py::module_& m) {
    bind<IQVRCatalogChapter>(m, QVR_PROP(name), QVR_PROP(visible), QVR_PROP(desc), QVR_REF(images),
                             QVR_REF(link), QVR_REF(documents), QVR_REF(extrinsics));
    bind<IQVRCatalogPart>(m, QVR_PROP(desc), QVR_PROP(name), QVR_PROP(visible), QVR_REF(documents),
                          QVR_REF(images), QVR_REF(link), QVR_PROP(tableRef), QVR_DO(getTable, 0),
                          QVR_REF(classifications), QVR_REF(orderInfo), QVR_DO(setTableLocation),
                          QVR_DO(attachTable), QVR_REF(extrinsics));
    bind<IQVRCatalogClass>(m, QVR_PROP(domain), QVR_PROP(value));
    bind<IQVRCatalogExtrinsic>(m, QVR_PROP(name), QVR_REF(content), QVR_PROP(value));
}

void bindMedia(py::module_& m) {
    bind<IQVRCatalogURL>(m, QVR_PROP(title), QVR_PROP(lang), QVR_PROP(href), QVR_PROP(actuate),
                         QVR_PROP(role), QVR_PROP(show), QVR_PROP(type));
    bind<IQVRCatalogDocument>(m, QVR_PROP(name));
    bind<IQVRCatalogDocuments>(m, QVR_PROP(name));
}

void bindOrder(py::module_& m) {
    bind<IQVRCatalogOrderInfo>(m, QVR_PROP(effDate), QVR_PROP(expDate), QVR_REF(availability));
    bind<IQVRCatalogCountryCode>(m, QVR_PROP(isoCountryCode), QVR_PROP(value));
    bind<IQVRCatalogOrderTarget>(m, QVR_REF(target), QVR_GET(targetType));
    bind<IQVRCatalogOrderMethod>(m, QVR_PROP(orderProtocol), QVR_REF(orderTarget));
}

void bindContact(py::module_& m) {
    bind<IQVRCatalogStreet>(m, QVR_PROP(value));
    bind<IQVRCatalogPostalAddress>(m, QVR_PROP(city), QVR_PROP(country), QVR_PROP(state),
                                   QVR_PROP(postalCode));
    bind<IQVRCatalogTelephoneNumber>(m, QVR_PROP(countryCode), QVR_PROP(areaOrCityCode),
                                     QVR_PROP(number), QVR_PROP(extension));
    bind<IQVRCatalogPhone>(m, QVR_REF(telephoneNumber), QVR_PROP(name));
    bind<IQVRCatalogFax>(m, QVR_REF(telephoneNumber), QVR_PROP(name));
    bind<IQVRCatalogEmail>(m, QVR_PROP(value), QVR_PROP(name));
    bind<IQVRCatalogAddress>(m, QVR_PROP(name), QVR_PROP(isoCountryCode), QVR_REF(postalAddress),
                             QVR_REF(email), QVR_REF(phone), QVR_REF(fax));
}

void bindSupplier(py::module_& m) {
    bind<IQVRCatalogSupplierID>(m, QVR_PROP(domain), QVR_PROP(value));
    bind<IQVRCatalogECommerceCenterID>(m, QVR_PROP(domain), QVR_PROP(value));
    bind<IQVRCatalogSupplierLocation>(m, QVR_REF(address), QVR_REF(orderMethods));
    bind<IQVRCatalogSupplier>(m, QVR_PROP(name), QVR_PROP(desc), QVR_REF(images), QVR_REF(link),
                              QVR_REF(documents), QVR_REF(supplierIDs),
                              QVR_REF(eCommerceCenterIDs));
    bind<IQVRCatalogReference>(m, QVR_REF(owner), QVR_GET(kind), QVR_PROP(url), QVR_GET(baseUrl),
                               QVR_GET(absoluteUrl), QVR_GET(fileName), QVR_GET(extension),
                               QVR_GET(directory), QVR_DO(moveTo), QVR_DO(copyTo), QVR_GET(object));
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
