// DecodePhoto through the Windows Imaging Component: any depth to 24-bit, upright, alpha composed.
#include <windows.h>
#include <objbase.h>
#include <propidl.h>
#include <wincodec.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "graphics/photo_decoder.h"

namespace qv {

namespace {

// Owns one COM interface pointer.
template <class T>
class ComRef {
 public:
  ComRef() = default;
  ~ComRef() {
    if (p_) p_->Release();
  }
  ComRef(const ComRef&) = delete;
  ComRef& operator=(const ComRef&) = delete;
  T** put() { return &p_; }
  T* get() const { return p_; }
  T* operator->() const { return p_; }

 private:
  T* p_ = nullptr;
};

// COM for the length of one decoding. The game's thread is a GUI thread, so it gets an
// apartment; a thread that already chose the other model keeps it (the imaging component works
// in both), and only an initialisation made here is undone here.
class ComApartment {
 public:
  ComApartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~ComApartment() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
  bool usable() const { return SUCCEEDED(result_) || result_ == RPC_E_CHANGED_MODE; }

 private:
  HRESULT result_;
};

PhotoError FromWin32(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_INVALID_DRIVE:
      return PhotoError::kNotFound;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_ACCESS_DENIED:
      return PhotoError::kLocked;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return PhotoError::kOutOfMemory;
    default:
      return PhotoError::kDamaged;
  }
}

PhotoError FromHresult(HRESULT result) {
  if (HRESULT_FACILITY(result) == FACILITY_WIN32) return FromWin32(HRESULT_CODE(result));
  switch (result) {
    case E_ACCESSDENIED:
      return PhotoError::kLocked;
    case E_OUTOFMEMORY:
      return PhotoError::kOutOfMemory;
    case WINCODEC_ERR_COMPONENTNOTFOUND:
    case WINCODEC_ERR_UNKNOWNIMAGEFORMAT:
      return PhotoError::kNotAPicture;
    case WINCODEC_ERR_IMAGESIZEOUTOFRANGE:
      return PhotoError::kTooLarge;
    default:
      return PhotoError::kDamaged;
  }
}

// The file's own troubles, told apart before the imaging component turns them into its codes:
// gone, held by another program, or empty.
PhotoError CheckFile(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA attributes{};
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &attributes)) {
    return FromWin32(GetLastError());
  }
  if (attributes.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) return PhotoError::kNotAPicture;
  if (attributes.nFileSizeHigh == 0 && attributes.nFileSizeLow == 0) return PhotoError::kEmpty;
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return FromWin32(GetLastError());
  CloseHandle(file);
  return PhotoError::kNone;
}

// The camera's orientation as the frame's metadata tells it, or 0 where it does not.
int OrientationFromMetadata(IWICBitmapFrameDecode* frame) {
  ComRef<IWICMetadataQueryReader> reader;
  if (FAILED(frame->GetMetadataQueryReader(reader.put())) || !reader.get()) return 0;
  static const wchar_t* const kNames[] = {L"/app1/ifd/{ushort=274}", L"/xmp/tiff:Orientation"};
  for (const wchar_t* name : kNames) {
    PROPVARIANT value;
    PropVariantInit(&value);
    int orientation = 0;
    if (SUCCEEDED(reader->GetMetadataByName(name, &value))) {
      if (value.vt == VT_UI2) orientation = value.uiVal;
      if (value.vt == VT_LPWSTR && value.pwszVal) orientation = _wtoi(value.pwszVal);
      if (value.vt == VT_LPSTR && value.pszVal) orientation = atoi(value.pszVal);
    }
    PropVariantClear(&value);
    if (orientation >= 1 && orientation <= 8) return orientation;
  }
  return 0;
}

// The start of the file, where the header and a JPEG's EXIF block sit.
std::vector<std::uint8_t> ReadHead(const std::wstring& path) {
  std::vector<std::uint8_t> head;
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return head;
  head.resize(kJpegExifHeadBytes);
  DWORD got = 0;
  if (!ReadFile(file, head.data(), static_cast<DWORD>(head.size()), &got, nullptr)) got = 0;
  CloseHandle(file);
  head.resize(got);
  return head;
}

int ReadOrientation(const std::vector<std::uint8_t>& head, IWICBitmapDecoder* decoder,
                    IWICBitmapFrameDecode* frame) {
  const int fromMetadata = OrientationFromMetadata(frame);
  if (fromMetadata != 0) return fromMetadata;
  GUID container{};
  if (SUCCEEDED(decoder->GetContainerFormat(&container)) &&
      IsEqualGUID(container, GUID_ContainerFormatJpeg)) {
    // Not every imaging component reads a JPEG's EXIF block (Wine's does not).
    return JpegExifOrientation(head.data(), head.size());
  }
  return 1;
}

// How the source's pixels are read: formats with more than 8 bits a channel are read as they
// are and rounded here (the converter would drop the low byte); everything else goes through
// the converter to 8-bit blue-green-red-alpha.
enum class SourceLayout { kBgra8, kRgb16, kBgr16, kRgba16, kBgra16, kGrey16 };

struct WideFormat {
  const GUID* format;
  SourceLayout layout;
  int bytesPerPixel;
};

const WideFormat kWideFormats[] = {
    {&GUID_WICPixelFormat48bppRGB, SourceLayout::kRgb16, 6},
    {&GUID_WICPixelFormat48bppBGR, SourceLayout::kBgr16, 6},
    {&GUID_WICPixelFormat64bppRGBA, SourceLayout::kRgba16, 8},
    {&GUID_WICPixelFormat64bppBGRA, SourceLayout::kBgra16, 8},
    {&GUID_WICPixelFormat16bppGray, SourceLayout::kGrey16, 2},
};

std::uint8_t Compose8(int colour, int alpha, int background) {
  return static_cast<std::uint8_t>((colour * alpha + background * (255 - alpha) + 127) / 255);
}

// 16-bit channels composed at full precision, then rounded to 8 bits once.
std::uint8_t Compose16(std::uint32_t colour, std::uint32_t alpha, int background) {
  const std::uint64_t sum = std::uint64_t{colour} * alpha +
                            static_cast<std::uint64_t>(background) * 257u * (65535u - alpha);
  // sum / 65535 is the composed 16-bit value; /257 brings it to 8 bits, rounded to nearest.
  const std::uint64_t scale = 65535ull * 257ull;
  return static_cast<std::uint8_t>((sum + scale / 2) / scale);
}

std::uint32_t Word(const std::uint8_t* p) { return p[0] | (p[1] << 8); }

// One source pixel to blue, green, red.
void ToBgr(SourceLayout layout, const std::uint8_t* p, RgbQuad bg, std::uint8_t* out) {
  switch (layout) {
    case SourceLayout::kBgra8:
      out[0] = Compose8(p[0], p[3], bg.rgbBlue);
      out[1] = Compose8(p[1], p[3], bg.rgbGreen);
      out[2] = Compose8(p[2], p[3], bg.rgbRed);
      return;
    case SourceLayout::kRgb16:
    case SourceLayout::kRgba16: {
      const std::uint32_t a = layout == SourceLayout::kRgba16 ? Word(p + 6) : 65535u;
      out[0] = Compose16(Word(p + 4), a, bg.rgbBlue);
      out[1] = Compose16(Word(p + 2), a, bg.rgbGreen);
      out[2] = Compose16(Word(p), a, bg.rgbRed);
      return;
    }
    case SourceLayout::kBgr16:
    case SourceLayout::kBgra16: {
      const std::uint32_t a = layout == SourceLayout::kBgra16 ? Word(p + 6) : 65535u;
      out[0] = Compose16(Word(p), a, bg.rgbBlue);
      out[1] = Compose16(Word(p + 2), a, bg.rgbGreen);
      out[2] = Compose16(Word(p + 4), a, bg.rgbRed);
      return;
    }
    case SourceLayout::kGrey16:
      out[0] = out[1] = out[2] = Compose16(Word(p), 65535u, 0);
      return;
  }
}

struct Source {
  ComRef<IWICFormatConverter> converter;
  IWICBitmapSource* pixels = nullptr;
  SourceLayout layout = SourceLayout::kBgra8;
  int bytesPerPixel = 4;
};

HRESULT OpenSource(IWICImagingFactory* factory, IWICBitmapFrameDecode* frame, Source* source) {
  WICPixelFormatGUID format{};
  HRESULT result = frame->GetPixelFormat(&format);
  if (FAILED(result)) return result;
  for (const WideFormat& wide : kWideFormats) {
    if (IsEqualGUID(format, *wide.format)) {
      source->pixels = frame;
      source->layout = wide.layout;
      source->bytesPerPixel = wide.bytesPerPixel;
      return S_OK;
    }
  }
  result = factory->CreateFormatConverter(source->converter.put());
  if (FAILED(result)) return result;
  result = source->converter->Initialize(frame, GUID_WICPixelFormat32bppBGRA,
                                         WICBitmapDitherTypeNone, nullptr, 0.0,
                                         WICBitmapPaletteTypeCustom);
  if (FAILED(result)) return result;
  source->pixels = source->converter.get();
  return S_OK;
}

// Copies the source into the DIB band by band (a band of about a megabyte, so that a large
// photograph never needs a second full-size copy), turning each pixel upright on the way.
PhotoError CopyUpright(const Source& source, int width, int height, int orientation,
                       RgbQuad background, PackedDib* picture) {
  const OrientedSize upright = OrientSize(orientation, width, height);
  const std::int64_t rowBytes = DibRowBytes(upright.width, 24);
  const std::int64_t pixelBytes = rowBytes * upright.height;
  HIMAGE block = PackedDib::AllocateBlock(static_cast<std::size_t>(pixelBytes));
  if (!block) return PhotoError::kOutOfMemory;
  PackedDib owned;
  owned.Adopt(block, kDibPixelOffset + static_cast<std::size_t>(pixelBytes));
  BitmapInfoHeader header{};
  header.biSize = 40;
  header.biWidth = upright.width;
  header.biHeight = upright.height;
  header.biPlanes = 1;
  header.biBitCount = 24;
  header.biCompression = kBiRgb;
  header.biSizeImage = static_cast<std::uint32_t>(pixelBytes);
  std::memcpy(block, &header, sizeof header);
  std::uint8_t* pixels = DibPixels(block);
  const std::int64_t usedBytes = std::int64_t{upright.width} * 3;
  for (int row = 0; row < upright.height; ++row) {
    std::memset(pixels + row * rowBytes + usedBytes, 0,
                static_cast<std::size_t>(rowBytes - usedBytes));
  }

  const UINT stride = static_cast<UINT>(width) * static_cast<UINT>(source.bytesPerPixel);
  const int bandRows = std::clamp(static_cast<int>((1u << 20) / stride), 1, height);
  std::vector<std::uint8_t> band;
  try {
    band.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(bandRows));
  } catch (const std::bad_alloc&) {
    return PhotoError::kOutOfMemory;
  }
  for (int top = 0; top < height; top += bandRows) {
    const int rows = std::min(bandRows, height - top);
    const WICRect rect{0, top, width, rows};
    const HRESULT result = source.pixels->CopyPixels(
        &rect, stride, static_cast<UINT>(stride * static_cast<UINT>(rows)), band.data());
    if (FAILED(result)) return FromHresult(result);
    for (int y = 0; y < rows; ++y) {
      const std::uint8_t* in = band.data() + static_cast<std::size_t>(y) * stride;
      for (int x = 0; x < width; ++x, in += source.bytesPerPixel) {
        int ux = 0;
        int uy = 0;
        OrientPoint(orientation, width, height, x, top + y, &ux, &uy);
        ToBgr(source.layout, in, background,
              pixels + (upright.height - 1 - uy) * rowBytes + std::int64_t{ux} * 3);
      }
    }
  }
  *picture = std::move(owned);
  return PhotoError::kNone;
}

PhotoError Decode(const std::wstring& path, RgbQuad background, PackedDib* picture) {
  ComRef<IWICImagingFactory> factory;
  if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                              IID_IWICImagingFactory, reinterpret_cast<void**>(factory.put())))) {
    return PhotoError::kNoDecoder;
  }
  const std::vector<std::uint8_t> head = ReadHead(path);
  if (StatedPhotoPixels(head.data(), head.size()) > kMaxPhotoPixels) return PhotoError::kTooLarge;
  ComRef<IWICBitmapDecoder> decoder;
  HRESULT result = factory->CreateDecoderFromFilename(
      path.c_str(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand, decoder.put());
  if (FAILED(result)) return FromHresult(result);
  ComRef<IWICBitmapFrameDecode> frame;
  result = decoder->GetFrame(0, frame.put());
  if (FAILED(result)) return FromHresult(result);
  UINT width = 0;
  UINT height = 0;
  result = frame->GetSize(&width, &height);
  if (FAILED(result)) return FromHresult(result);
  if (width == 0 || height == 0) return PhotoError::kDamaged;
  if (std::uint64_t{width} * height > static_cast<std::uint64_t>(kMaxPhotoPixels)) {
    return PhotoError::kTooLarge;
  }
  Source source;
  result = OpenSource(factory.get(), frame.get(), &source);
  if (FAILED(result)) return FromHresult(result);
  return CopyUpright(source, static_cast<int>(width), static_cast<int>(height),
                     ReadOrientation(head, decoder.get(), frame.get()), background, picture);
}

}  // namespace

DecodedPhoto DecodePhoto(const std::wstring& path, RgbQuad background) {
  DecodedPhoto photo;
  photo.error = CheckFile(path);
  if (photo.error != PhotoError::kNone) return photo;
  ComApartment apartment;
  if (!apartment.usable()) {
    photo.error = PhotoError::kNoDecoder;
    return photo;
  }
  photo.error = Decode(path, background, &photo.picture);
  return photo;
}

}  // namespace qv
