#include <dwrite.h>

#include <string>
#include <vector>

#include "ui/SystemFontFiles.h"

namespace Corvanta::UI {
namespace {

// Releases a COM object at the end of its scope, on every path.
template <typename Interface>
class ComPointer final {
public:
    ComPointer() = default;
    ~ComPointer() {
        if (object_ != nullptr) object_->Release();
    }
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;

    [[nodiscard]] Interface** Out() { return &object_; }
    Interface* operator->() const { return object_; }
    [[nodiscard]] Interface* Get() const { return object_; }

private:
    Interface* object_ = nullptr;
};

[[nodiscard]] std::wstring Widen(const std::string& text) {
    std::wstring wide;
    for (const char byte : text) wide += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    return wide;
}

// Keeps the low byte of each character: a path beyond Latin does not survive this and does not open.
[[nodiscard]] std::string Narrow(const std::wstring& text) {
    std::string narrow;
    for (const wchar_t character : text) narrow += static_cast<char>(character);
    return narrow;
}

[[nodiscard]] std::string PathOf(IDWriteFontFile* file) {
    ComPointer<IDWriteFontFileLoader> loader;
    if (FAILED(file->GetLoader(loader.Out()))) return {};
    ComPointer<IDWriteLocalFontFileLoader> local;
    if (FAILED(loader->QueryInterface(__uuidof(IDWriteLocalFontFileLoader),
                                      reinterpret_cast<void**>(local.Out())))) {
        return {};
    }
    const void* key = nullptr;
    UINT32 keySize = 0;
    UINT32 length = 0;
    if (FAILED(file->GetReferenceKey(&key, &keySize)) ||
        FAILED(local->GetFilePathLengthFromKey(key, keySize, &length))) {
        return {};
    }
    std::vector<wchar_t> path(static_cast<size_t>(length) + 1);
    if (FAILED(local->GetFilePathFromKey(key, keySize, path.data(), length + 1))) return {};
    return Narrow(path.data());
}

}  // namespace

SystemFontFiles::SystemFontFiles() {
    IDWriteFactory* factory = nullptr;
    if (FAILED(DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                                   reinterpret_cast<IUnknown**>(&factory)))) {
        return;
    }
    first_ = factory;
    IDWriteFontCollection* collection = nullptr;
    if (SUCCEEDED(factory->GetSystemFontCollection(&collection, FALSE))) second_ = collection;
}

SystemFontFiles::~SystemFontFiles() {
    if (second_ != nullptr) static_cast<IDWriteFontCollection*>(second_)->Release();
    if (first_ != nullptr) static_cast<IDWriteFactory*>(first_)->Release();
}

std::string SystemFontFiles::Find(const std::string& family) const {
    auto* collection = static_cast<IDWriteFontCollection*>(second_);
    if (first_ == nullptr || collection == nullptr) return {};
    UINT32 index = 0;
    BOOL exists = FALSE;
    if (FAILED(collection->FindFamilyName(Widen(family).c_str(), &index, &exists)) || exists == FALSE)
        return {};
    ComPointer<IDWriteFontFamily> fonts;
    if (FAILED(collection->GetFontFamily(index, fonts.Out()))) return {};
    ComPointer<IDWriteFont> font;
    if (FAILED(fonts->GetFont(0, font.Out()))) return {};
    ComPointer<IDWriteFontFace> face;
    if (FAILED(font->CreateFontFace(face.Out()))) return {};
    UINT32 count = 0;
    if (FAILED(face->GetFiles(&count, nullptr)) || count == 0) return {};
    UINT32 one = 1;
    ComPointer<IDWriteFontFile> file;
    if (FAILED(face->GetFiles(&one, file.Out())) || file.Get() == nullptr) return {};
    return PathOf(file.Get());
}

}  // namespace Corvanta::UI
