// The table document: its root, columns, views, cells and recipes.
#include "binding.h"

namespace qvrpy {

using namespace qvr;

namespace {

void bindTable(py::module_& m) {
    using Self = IQVRCatalogTable;
    auto b = bind<Self>(
        m, QVR_DO(fireEvent, Variant()), QVR_DO(load, 0), QVR_DO(loadXML, String(), 0),
        QVR_DO(create), QVR_DO(save), QVR_DO(saveAs), QVR_DO(createURL), QVR_DO(createImage),
        QVR_DO(createImages), QVR_DO(createReferencedFiles), QVR_DO(createView),
        QVR_DO(createDrawing), QVR_DO(createCell), QVR_DO(createRefCell), QVR_DO(createColumn),
        QVR_DO(createRefColumn), QVR_DO(createConstView), QVR_DO(createConstColumn),
        QVR_DO(createCalculatedColumn), QVR_DO(createInfoCell), QVR_DO(createRecipe),
        QVR_DO(newGuid), QVR_DO(moveColumns), QVR_DO(freezeCalculatedColumns), QVR_GET(xml),
        QVR_PROP(url), QVR_GET(uniqueColumn), QVR_PROP(language), QVR_PROP(fixColumn),
        QVR_PROP(desc), QVR_GET(version), QVR_PROP(baseUrl), QVR_REF(extrinsics),
        QVR_PROP(footNote), QVR_DO(unadvise));
    addCreator(b, &CreateCatalogTable, "A new table, not initialized yet.");
    addEvents(b);
}

void bindColumns(py::module_& m) {
    bind<IQVRTableChildObject>(m, QVR_PROP(desc), QVR_PROP(visible), QVR_SET(id),
                               QVR_REF(extrinsics));
    bind<IQVRTableColumnObject>(m, QVR_PROP(attrib), QVR_PROP(dataType), QVR_PROP(name),
                                QVR_PROP(unit));
    bind<IQVRTableUniqueColumn>(m, QVR_DO(moveRows));
    bind<IQVRTableConstColumn>(m, QVR_PROP(constant));
    bind<IQVRTableCalculatedColumn>(m, QVR_PROP(expression), QVR_DO(calculate));
    bind<IQVRTableRefColumn>(m, QVR_PROP(role), QVR_PROP(show), QVR_PROP(actuate));
    bind<IQVRTableViewObject>(m, QVR_PROP(viewKey), QVR_PROP(viewName), QVR_REF(images),
                              QVR_REF(xRefFiles));
}

void bindCells(py::module_& m) {
    bind<IQVRTableCellObject>(m, QVR_SET(idref), QVR_SET(row));
    bind<IQVRTableCell>(m, QVR_PROP(value));
    bind<IQVRTableInfoCell>(m, QVR_DO(getCell));
    bind<IQVRTableRecipe>(m, QVR_PROP(application), QVR_PROP(path));
    bind<IQVRTableDrawing>(m, QVR_PROP(value));
    bind<IQVRTableRefCell>(m, QVR_PROP(value), QVR_PROP(desc), QVR_PROP(title));
}

} // namespace

void bindTableClasses(py::module_& m) {
    bindTable(m);
    bindColumns(m);
    bindCells(m);
}

} // namespace qvrpy
