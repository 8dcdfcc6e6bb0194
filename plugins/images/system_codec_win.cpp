#include "images/system_codec_win.h"

#include "image/rgba.h"

#include <windows.h>

#include <objbase.h>
#include <wincodec.h>

#include <algorithm>
#include <memory>
#include <type_traits>

namespace facetor {

namespace {

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <typename Interface> using Com = std::unique_ptr<Interface, Releaser>;

/// The component library for one call, where the thread has not begun it itself.
class ComScope {
public:
    ComScope() : begun_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~ComScope()
    {
        if (begun_) CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

private:
    bool begun_;
};

/// Calls `create` with a place for an interface; null when it fails.
template <typename Interface, typename Create> Com<Interface> made(const Create& create)
{
    Interface* object = nullptr;
    return SUCCEEDED(create(&object)) ? Com<Interface>(object) : nullptr;
}

/// A file's first image. Each of the parts works through those before it, so they are released in
/// the reverse order; the stream reads the file's bytes where they are.
struct OpenImage {
    Com<IWICImagingFactory> factory;
    Com<IWICStream> stream;
    Com<IWICBitmapDecoder> decoder;
    Com<IWICBitmapFrameDecode> frame; ///< null when there is none
    UINT width = 0, height = 0;
};

OpenImage openImage(std::span<const std::byte> file, const GUID& kind)
{
    OpenImage image;
    if (file.size() > largestImageFile) return image;
    image.factory = made<IWICImagingFactory>([](IWICImagingFactory** to) {
        return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IWICImagingFactory, reinterpret_cast<void**>(to));
    });
    if (!image.factory) return image;
    image.stream =
        made<IWICStream>([&](IWICStream** to) { return image.factory->CreateStream(to); });
    // The interface has no form for bytes that are not to be written to.
    auto* bytes = reinterpret_cast<BYTE*>(const_cast<std::byte*>(file.data()));
    if (!image.stream ||
        FAILED(image.stream->InitializeFromMemory(bytes, static_cast<DWORD>(file.size()))))
        return image;
    image.decoder = made<IWICBitmapDecoder>([&](IWICBitmapDecoder** to) {
        return image.factory->CreateDecoderFromStream(image.stream.get(), nullptr,
                                                      WICDecodeMetadataCacheOnDemand, to);
    });
    GUID found{};
    if (!image.decoder || FAILED(image.decoder->GetContainerFormat(&found)) || found != kind)
        return image;
    auto frame = made<IWICBitmapFrameDecode>(
        [&](IWICBitmapFrameDecode** to) { return image.decoder->GetFrame(0, to); });
    if (frame && SUCCEEDED(frame->GetSize(&image.width, &image.height)) && image.width > 0 &&
        image.height > 0)
        image.frame = std::move(frame);
    return image;
}

template <const GUID& kind> std::optional<ImageInfo> systemInfo(std::span<const std::byte> file)
{
    const ComScope scope;
    const OpenImage image = openImage(file, kind);
    if (!image.frame) return std::nullopt;
    return ImageInfo{image.width, image.height, 32};
}

template <const GUID& kind>
bool decodeWithSystem(std::span<const std::byte> file, std::span<std::byte> buffer)
{
    const ComScope scope;
    const OpenImage image = openImage(file, kind);
    if (!image.frame || !isDecodable({image.width, image.height, 32})) return false;
    const auto converter = made<IWICFormatConverter>(
        [&](IWICFormatConverter** to) { return image.factory->CreateFormatConverter(to); });
    if (!converter || FAILED(converter->Initialize(image.frame.get(), GUID_WICPixelFormat32bppRGBA,
                                                   WICBitmapDitherTypeNone, nullptr, 0,
                                                   WICBitmapPaletteTypeCustom)))
        return false;
    const std::size_t rowBytes = std::size_t{image.width} * 4;
    std::vector<std::uint8_t> rgba(rowBytes * image.height);
    if (rgba.size() != buffer.size() ||
        FAILED(converter->CopyPixels(nullptr, static_cast<UINT>(rowBytes),
                                     static_cast<UINT>(rgba.size()), rgba.data())))
        return false;
    bool transparent = false;
    for (std::size_t i = 3; i < rgba.size() && !transparent; i += 4) transparent = rgba[i] < 128;
    fillFromRgba(rgba, transparent ? AlphaRule::separate : AlphaRule::ignore, buffer);
    return true;
}

} // namespace

const ImageCodec jpegCodec{systemInfo<GUID_ContainerFormatJpeg>,
                           decodeWithSystem<GUID_ContainerFormatJpeg>, nullptr};
const ImageCodec gifCodec{systemInfo<GUID_ContainerFormatGif>,
                          decodeWithSystem<GUID_ContainerFormatGif>, nullptr};
const ImageCodec tiffCodec{systemInfo<GUID_ContainerFormatTiff>,
                           decodeWithSystem<GUID_ContainerFormatTiff>, nullptr};

} // namespace facetor
