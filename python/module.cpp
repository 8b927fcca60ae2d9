// The Python module qvrcatalog: the library's object model, shaped the way Python programs use
// objects (see binding.h for the rules that turn each operation into a method or a property).
#include "binding.h"

PYBIND11_MODULE(qvrcatalog, m) {
    using namespace qvr;
    using namespace qvrpy;
    m.doc() = R"doc(Catalogs of manufactured parts and their tables, from Python.

    catalog = qvrcatalog.Catalog()
    catalog.load("catalog.xml")
    part = catalog.findById(part_id)
    table = part.getTable()

Each operation of the library is a method of the same name, and each get_x/put_x (or putref_x)
pair the property x. A failure raises qvrcatalog.Error with the status and the library's
message; where the library finds nothing there (S_FALSE) a single value reads as None, a boolean
keeps its value, and an operation that hands nothing out answers True (S_OK) or False (S_FALSE).
Lists are sequences indexed from 0 (list[i], len, iteration) that also take a key (list["M8x40"]).
Values: int, float, str, bool, datetime.datetime (Date), decimal.Decimal (Currency), None (Empty
and Null), lists (arrays) and objects. Events: a callable given to advise().)doc";
    initBasics(m);
    bindPlatformClasses(m);
    // Every class first, bases before the classes that derive from them.
    declare<IUnknown, IQVRCatalogObject, IQVRCatalogObjectList, IEnumVARIANT, IXMLDOMNode,
            IXMLDOMElement, IXMLDOMNodeList, IXMLDOMParseError, IXMLDOMDocument, IStream,
            IDataObject, IClassFactory, IQVRCatalog, IQVRCatalogChapter, IQVRCatalogPart,
            IQVRCatalogClass, IQVRCatalogClassifications, IQVRCatalogExtrinsic,
            IQVRCatalogExtrinsics, IQVRCatalogURL, IQVRCatalogLink, IQVRCatalogImage,
            IQVRCatalogImages, IQVRCatalogDocument, IQVRCatalogDocuments,
            IQVRCatalogReferencedFiles, IQVRCatalogAvailability, IQVRCatalogOrderInfo,
            IQVRCatalogCountryCode, IQVRCatalogOrderTarget, IQVRCatalogOrderMethod,
            IQVRCatalogOrderMethods, IQVRCatalogStreet, IQVRCatalogPostalAddress,
            IQVRCatalogTelephoneNumber, IQVRCatalogPhone, IQVRCatalogFax, IQVRCatalogEmail,
            IQVRCatalogAddress, IQVRCatalogSupplierID, IQVRCatalogECommerceCenterID,
            IQVRCatalogSupplierIDs, IQVRCatalogECommerceCenterIDs, IQVRCatalogSupplierLocation,
            IQVRCatalogSupplier, IQVRCatalogReference, IQVRCatalogTable, IQVRTableChildObject,
            IQVRTableColumnObject, IQVRTableColumn, IQVRTableUniqueColumn, IQVRTableConstColumn,
            IQVRTableCalculatedColumn, IQVRTableRefColumn, IQVRTableViewObject, IQVRTableView,
            IQVRTableConstView, IQVRTableCellObject, IQVRTableCell, IQVRTableInfoCell,
            IQVRTableRecipe, IQVRTableDrawing, IQVRTableRefCell>(m);
    bindPlatformOperations(m);
    bindCatalogClasses(m);
    bindContentClasses(m);
    bindTableClasses(m);
}
