// The model's own clipboard formats, registered once per process, and the table of formats that
// a data object lists.
#pragma once

#include <span>

#include <qvr/transfer.h>

namespace qvr {

struct TransferFormats {
    CLIPFORMAT nodeType;
    CLIPFORMAT xml;
    CLIPFORMAT localProxy;
    CLIPFORMAT remoteProxy;
    CLIPFORMAT localObject;
    CLIPFORMAT objectBase;
};

// Registered in this order when the library is loaded.
const TransferFormats& transferFormats();

// The formats every data object lists, whatever its object: the six of the model and the
// Unicode text. The table is kept as it has always been registered: plain text (1) was entered
// in the same line as Unicode text and overwritten by it, so 13 is listed and 1 is not, although
// it is 1 that a data object renders through GetData.
std::span<const FORMATETC> listedFormats();
// A new enumerator over the listed formats for `direction` (DATADIR_GET or DATADIR_SET).
HRESULT enumListedFormats(std::uint32_t direction, Ref<IEnumFORMATETC>* formats);

} // namespace qvr
