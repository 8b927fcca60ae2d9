// The roots of the catalog document and its lists, each as the list of its operations.
#include "binding.h"

namespace qvrpy {

using namespace qvr;

namespace {

using ObjectListWalk =
    IndexWalk<IQVRCatalogObjectList, IQVRCatalogObject, &IQVRCatalogObjectList::get_count,
              &IQVRCatalogObjectList::getItem, 1>;

void bindObject(py::module_& m) {
    using Self = IQVRCatalogObject;
    auto b =
        bind<Self>(m, QVR_DO(getValue), QVR_DO(insertBefore, Variant()), QVR_DO(appendChild),
                   QVR_DO(removeChild), QVR_DO(cloneNode), QVR_DO(contains), QVR_GET(key),
                   QVR_GET(objectType), QVR_GET(childNodes), QVR_REF(catalog), QVR_REF(parentNode),
                   QVR_GET(domNode), QVR_DO(getDataObject), QVR_DO(getReferencedFiles));
    b.cls().def("__repr__", [](Self& self) {
        String key;
        self.get_key(&key);
        py::object object = py::cast(Ref<Self>(&self));
        py::handle type = object.get_type();
        return "<qvrcatalog." + type.attr("__name__").cast<std::string>() + " " +
               py::repr(py::cast(key)).cast<std::string>() + ">";
    });
}

void bindLists(py::module_& m) {
    using Self = IQVRCatalogObjectList;
    auto b = bind<Self>(m, QVR_GET(_NewEnum), QVR_DO(getItem), QVR_GET(count),
                        QVR_DO(insertBefore, Variant()), QVR_DO(appendChild), QVR_DO(removeChild),
                        QVR_DO(clear), QVR_AS(item, get_item));
    addSequence<ObjectListWalk, Self>(b.cls());
    // Lookup by key, as get_item takes a text.
    b.cls().def(
        "__getitem__",
        [](Self& list, const String& key) {
            Ref<IQVRCatalogObject> item;
            HRESULT hr = list.get_item(Variant(key), &item);
            ClearErrorInfo();
            if (FAILED(hr) || !item) throw py::key_error(key.str());
            return item;
        },
        py::arg("key"));
    // The table cache is a list that also hands out a table under another key.
    auto getTableAs = decltype(callerOf(&IQVRCatalogObjectTableCache::getTableAs))::callable(
        &IQVRCatalogObjectTableCache::getTableAs, "getTableAs");
    b.cls().def(
        "getTableAs",
        [getTableAs](Self& list, const Variant& key, const String& newKey) {
            Ref<IQVRCatalogObjectTableCache> cache = query<IQVRCatalogObjectTableCache>(&list);
            if (!cache) raiseError(E_NOINTERFACE, "getTableAs (a list other than the table cache)");
            return getTableAs(*cache, key, newKey);
        },
        py::arg("key"), py::arg("newKey"), docOf("IQVRCatalogObjectTableCache", "getTableAs"));

    // The enumerator is also a Python iterator.
    using Walker = IEnumVARIANT;
    auto e = bind<Walker>(m, QVR_DO(Skip), QVR_DO(Reset), QVR_DO(Clone));
    auto next = [](Walker& self, std::uint32_t count) {
        std::vector<Variant> items(count);
        std::uint32_t fetched = 0;
        ClearErrorInfo();
        check(self.Next(count, items.data(), &fetched), "Next");
        items.resize(fetched);
        return items;
    };
    e.cls()
        .def("Next", next, py::arg("count") = 1, docOf("IEnumVARIANT", "Next"))
        .def("__iter__", [](py::object self) { return self; })
        .def("__next__", [next](Walker& self) {
            std::vector<Variant> items = next(self, 1);
            if (items.empty()) throw py::stop_iteration();
            return items.front();
        });
}

void bindCatalog(py::module_& m) {
    using Self = IQVRCatalog;
    auto b = bind<Self>(
        m, QVR_GET(version), QVR_PROP(name), QVR_PROP(language), QVR_PROP(desc), QVR_GET(xml),
        QVR_REF(images), QVR_REF(link), QVR_REF(documents), QVR_GET(tables), QVR_REF(orderInfo),
        QVR_REF(supplier), QVR_PROP(baseUrl), QVR_REF(extrinsics), QVR_DO(getHostStream),
        QVR_SETREF(host), QVR_DO(load), QVR_DO(loadXML), QVR_DO(save), QVR_DO(saveAs),
        QVR_DO(create), QVR_DO(createChapter), QVR_DO(createImage), QVR_DO(createImages),
        QVR_DO(createURL), QVR_DO(createLink), QVR_DO(createDocument), QVR_DO(createDocuments),
        QVR_DO(createPart), QVR_DO(createClass), QVR_DO(createClassifications),
        QVR_DO(createOrderInfo), QVR_DO(createAvailability), QVR_DO(createCountryCode),
        QVR_DO(createOrderTarget), QVR_DO(createOrderMethod), QVR_DO(createOrderMethods),
        QVR_DO(createTelephoneNumber), QVR_DO(createPhone), QVR_DO(createFax), QVR_DO(createEmail),
        QVR_DO(createStreet), QVR_DO(createPostalAddress), QVR_DO(createAddress),
        QVR_DO(createSupplierLocation), QVR_DO(createSupplierID), QVR_DO(createSupplierIDs),
        QVR_DO(createECommerceCenterID), QVR_DO(createECommerceCenterIDs), QVR_DO(createSupplier),
        QVR_DO(createExtrinsics), QVR_DO(createExtrinsic), QVR_DO(fireEvent, Variant()),
        QVR_DO(findById), QVR_DO(objectFromDataObject), QVR_DO(unadvise));
    addCreator(b, &CreateCatalog, "A new catalog, not initialized yet.");
    addEvents(b);
    m.def(
        "RelocateCatalog",
        [](IQVRCatalog* catalog, const String& folder, const String& fileName, bool move) {
            ClearErrorInfo();
            check(RelocateCatalog(catalog, folder, fileName, move ? VARIANT_TRUE : VARIANT_FALSE),
                  "RelocateCatalog");
        },
        py::arg("catalog"), py::arg("folder"), py::arg("fileName"), py::arg("move") = false,
        "Copies (or with move, moves) a catalog and every file it points at into `folder`, saved "
        "there as `fileName`; on failure every file and pointer stays as it was.");
}

} // namespace

void bindCatalogClasses(py::module_& m) {
    bindObject(m);
    bindLists(m);
    bindCatalog(m);
}

} // namespace qvrpy
