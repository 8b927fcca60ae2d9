#include "transfer/clipboard_formats.h"

#include <mutex>
#include <string>
#include <unordered_map>

#include "platform/com/failure.h"
#include "platform/com/object_base.h"
#include "transfer/memory_stream.h"

namespace qvr {
namespace {

constexpr CLIPFORMAT firstRegistered = 0xC000;
constexpr CLIPFORMAT lastRegistered = 0xFFFF;

std::string foldCase(const char* name) {
    std::string folded(name);
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

// The registry lives as long as the process: a number once given is never taken back.
struct FormatRegistry {
    std::mutex lock;
    std::unordered_map<std::string, CLIPFORMAT> numbers;
};

FormatRegistry& registry() {
    static auto* formats = new FormatRegistry; // never destroyed: numbers outlive every static
    return *formats;
}

constexpr std::uint32_t listedMedia = TYMED_HGLOBAL | TYMED_ISTREAM;

class CFormatEnumerator final : public ObjectBase<IEnumFORMATETC> {
public:
    explicit CFormatEnumerator(std::span<const FORMATETC> list, std::size_t next = 0)
        : list_(list), next_(next) {}
    HRESULT Next(std::uint32_t count, FORMATETC* formats, std::uint32_t* fetched) override {
        if (!formats && count > 0) return E_POINTER;
        const auto list = list_;
        std::uint32_t given = 0;
        while (given < count && next_ < list.size()) formats[given++] = list[next_++];
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT Skip(std::uint32_t count) override {
        const std::size_t size = list_.size();
        const bool all = next_ + count <= size;
        next_ = all ? next_ + count : size;
        return all ? S_OK : S_FALSE;
    }
    HRESULT Reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT Clone(Ref<IEnumFORMATETC>* copy) override {
        if (!copy) return E_POINTER;
        return guarded([&] {
            *copy = makeObject<CFormatEnumerator>(list_, next_);
            return S_OK;
        });
    }

private:
    std::span<const FORMATETC> list_;
    std::size_t next_;
};

} // namespace

CLIPFORMAT RegisterClipboardFormat(const char* name) {
    if (!name || !*name) return 0;
    try {
        FormatRegistry& formats = registry();
        std::lock_guard<std::mutex> hold(formats.lock);
        const std::string key = foldCase(name);
        if (const auto found = formats.numbers.find(key); found != formats.numbers.end())
            return found->second;
        const std::size_t next = firstRegistered + formats.numbers.size();
        if (next > lastRegistered) return 0; // the range is used up
        const auto number = static_cast<CLIPFORMAT>(next);
        formats.numbers.emplace(key, number);
        return number;
    } catch (...) {
        return 0;
    }
}

const TransferFormats& transferFormats() {
    static const TransferFormats formats{
        RegisterClipboardFormat("CF_QVRNODETYPE"),    RegisterClipboardFormat("CF_QVRXML"),
        RegisterClipboardFormat("CF_QVRLOCALPROXY"),  RegisterClipboardFormat("CF_QVRREMOTEPROXY"),
        RegisterClipboardFormat("CF_QVRLOCALOBJECT"), RegisterClipboardFormat("CF_QVROBJECTBASE"),
    };
    return formats;
}

std::span<const FORMATETC> listedFormats() {
    static const FORMATETC table[] = {
        {transferFormats().nodeType, nullptr, DVASPECT_CONTENT, -1, listedMedia},
        {transferFormats().localProxy, nullptr, DVASPECT_CONTENT, -1, listedMedia},
        {transferFormats().xml, nullptr, DVASPECT_CONTENT, -1, listedMedia},
        {transferFormats().remoteProxy, nullptr, DVASPECT_CONTENT, -1, listedMedia},
        {transferFormats().localObject, nullptr, DVASPECT_CONTENT, -1, listedMedia},
        {transferFormats().objectBase, nullptr, DVASPECT_CONTENT, -1, listedMedia},
        {CF_UNICODETEXT, nullptr, DVASPECT_CONTENT, -1, listedMedia},
    };
    return table;
}

HRESULT enumListedFormats(std::uint32_t direction, Ref<IEnumFORMATETC>* formats) {
    if (!formats) return E_POINTER;
    *formats = nullptr;
    if (direction != DATADIR_GET && direction != DATADIR_SET) return E_INVALIDARG;
    return guarded([&] {
        // Every line of the table is for reading: nothing is listed for writing.
        const auto list = listedFormats();
        *formats = makeObject<CFormatEnumerator>(direction == DATADIR_GET ? list : list.first(0));
        return S_OK;
    });
}

HRESULT CreateStreamOnHGlobal(Ref<IStream>* stream) {
    if (!stream) return E_POINTER;
    *stream = nullptr;
    return guarded([&] {
        *stream = makeObject<CMemoryStream>();
        return S_OK;
    });
}

void ReleaseStgMedium(STGMEDIUM* medium) {
    if (!medium) return;
    if (medium->tymed == TYMED_ISTREAM && medium->pstm) medium->pstm->Release();
    if (medium->tymed == TYMED_HGLOBAL) delete medium->hGlobal;
    if (medium->pUnkForRelease) medium->pUnkForRelease->Release();
    *medium = STGMEDIUM();
}

} // namespace qvr
