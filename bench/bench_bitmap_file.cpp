// ReadScaled of a 1024 x 768 8-bit .bmp to twice and half its size, beside a memcpy of the output.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "graphics/bitmap_file.h"

namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 768;

// The picture is written once, on first use, and its folder removed at exit.
class TemporaryPicture {
 public:
  TemporaryPicture()
      : folder_(std::filesystem::temp_directory_path() /
                ("qv_bench_bmp_" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directories(folder_);
    path_ = (folder_ / "picture.bmp").string();
    qv::BitmapInfoHeader header{40, kWidth, kHeight, 1, 8, qv::kBiRgb, kWidth * kHeight, 0, 0, 256, 0};
    std::vector<char> bytes(14 + 40 + 4 * 256 + kWidth * kHeight);
    bytes[0] = 'B';
    bytes[1] = 'M';
    std::memcpy(&bytes[14], &header, sizeof header);
    for (int i = 0; i < 256; ++i) std::memset(&bytes[54 + 4 * i], i, 3);
    for (std::size_t i = 54 + 4 * 256; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31);
    std::ofstream(path_, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  ~TemporaryPicture() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  const char* path() const { return path_.c_str(); }

 private:
  std::filesystem::path folder_;
  std::string path_;
};

const char* PicturePath() {
  static const TemporaryPicture picture;
  return picture.path();
}

// Seconds per output pixel, which the console prints with an SI prefix (ns), as the other
// pixel benchmarks do.
void TimePerPixel(benchmark::State& state, int width, int height) {
  state.counters["time_per_px"] = benchmark::Counter(
      static_cast<double>(width) * height,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

std::size_t OutputBytes(int width, int height) {
  return static_cast<std::size_t>(qv::DibRowBytes(width, 8) * height);
}

void BM_ReadScaled(benchmark::State& state, int width, int height) {
  qv::BitmapFile file;
  if (!file.Open(PicturePath())) {
    state.SkipWithError("the picture could not be opened");
    return;
  }
  std::vector<std::uint8_t> out(OutputBytes(width, height));
  for (auto _ : state) {
    if (!file.ReadScaled(width, height, out.data())) {
      state.SkipWithError("ReadScaled failed");
      break;
    }
    benchmark::ClobberMemory();
  }
  TimePerPixel(state, width, height);
}

// The same output bytes moved by memcpy: the floor ReadScaled is measured against.
void BM_MemcpySameBytes(benchmark::State& state, int width, int height) {
  std::vector<std::uint8_t> from(OutputBytes(width, height), 7);
  std::vector<std::uint8_t> to(from.size());
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), to.size());
    benchmark::ClobberMemory();
  }
  TimePerPixel(state, width, height);
}

BENCHMARK_CAPTURE(BM_ReadScaled, twice_2048x1536, 2 * kWidth, 2 * kHeight);
BENCHMARK_CAPTURE(BM_MemcpySameBytes, twice_2048x1536, 2 * kWidth, 2 * kHeight);
BENCHMARK_CAPTURE(BM_ReadScaled, half_512x384, kWidth / 2, kHeight / 2);
BENCHMARK_CAPTURE(BM_MemcpySameBytes, half_512x384, kWidth / 2, kHeight / 2);

}  // namespace
