// The demo: a short tour of what the library does so far.
#include <cstdio>

#include <qvr/qvr.h>

#include "core/ids.h"
#include "platform/com/error_report.h"
#include "platform/url/url.h"

using namespace qvr;

int main() {
    std::printf("qvrcatalog demo\n\n");
    std::printf("New ids: %s  %s  %s\n", newGuidId().c_str(), newColumnId().c_str(),
                newRowId().c_str());

    String url;
    url::pathToUrl("/data/catalogs/Fasteners and Bolts/Müller.xml", &url);
    String back;
    url::pathFromUrl(url.view(), &back);
    std::printf("Path to URL: %s\nand back:    %s\n", url.c_str(), back.c_str());
    url::pathToUrl("tables\\bolt.xml", &url);
    std::printf("Relative:    %s\n", url.c_str());

    HRESULT hr = reportError({"QVRCatalog.Demo", IUnknown::iid}, 136, E_FAIL);
    ErrorInfo info;
    GetErrorInfo(&info);
    std::printf("\nA reported failure: status 0x%08X from %s: %s\n", static_cast<unsigned>(hr),
                info.source.c_str(), info.description.c_str());
    std::printf("Library can unload: %s\n", CanUnloadNow() == S_OK ? "yes" : "no");
    return 0;
}
