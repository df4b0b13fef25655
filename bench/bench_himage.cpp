// Raster copy of packed pictures, reported per pixel beside a memcpy of the same bytes.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "graphics/himage_ops.h"
#include "graphics/packed_dib.h"

namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 768;

qv::PackedDib MakePicture(int bitCount) {
  const auto rowBytes = qv::DibRowBytes(kWidth, bitCount);
  qv::PackedDib dib;
  dib.Adopt(qv::PackedDib::AllocateBlock(static_cast<std::size_t>(rowBytes * kHeight)),
            qv::kDibPixelOffset + static_cast<std::size_t>(rowBytes * kHeight));
  qv::BitmapInfoHeader h{};
  h.biSize = 40;
  h.biWidth = kWidth;
  h.biHeight = kHeight;
  h.biPlanes = 1;
  h.biBitCount = static_cast<std::uint16_t>(bitCount);
  h.biSizeImage = static_cast<std::uint32_t>(rowBytes * kHeight);
  h.biClrUsed = bitCount == 8 ? 256 : 0;
  std::memcpy(dib.get(), &h, sizeof h);
  for (std::uint32_t i = 0; i < h.biSizeImage; ++i) qv::DibPixels(dib.get())[i] = static_cast<std::uint8_t>(i * 31);
  return dib;
}

void PerPixel(benchmark::State& state) {
  // Seconds per pixel, printed with an SI prefix (ps, ns).
  state.counters["time_per_px"] = benchmark::Counter(
      static_cast<double>(kWidth) * kHeight,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_RasterCopy(benchmark::State& state) {
  const int bitCount = static_cast<int>(state.range(0));
  const auto rop = static_cast<std::uint32_t>(state.range(1));
  qv::PackedDib from = MakePicture(bitCount);
  qv::PackedDib to = MakePicture(bitCount);
  for (auto _ : state) {
    qv::ImageRasterCopy(to.get(), 0, 0, kWidth, kHeight, from.get(), 0, 0, rop);
    benchmark::ClobberMemory();
  }
  PerPixel(state);
}
BENCHMARK(BM_RasterCopy)
    ->ArgNames({"bits", "rop"})
    ->Args({8, qv::kRopSrcCopy})
    ->Args({24, qv::kRopSrcCopy})
    ->Args({8, qv::kRopSrcAnd})
    ->Args({24, qv::kRopSrcInvert});

// The same bytes moved by memcpy: the floor the raster copy is measured against.
void BM_MemcpySameBytes(benchmark::State& state) {
  const int bitCount = static_cast<int>(state.range(0));
  const auto bytes = static_cast<std::size_t>(qv::DibRowBytes(kWidth, bitCount) * kHeight);
  std::vector<std::uint8_t> from(bytes, 7), to(bytes);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), bytes);
    benchmark::ClobberMemory();
  }
  PerPixel(state);
}
BENCHMARK(BM_MemcpySameBytes)->ArgName("bits")->Arg(8)->Arg(24);

}  // namespace
