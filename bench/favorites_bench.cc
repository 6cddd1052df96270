// Benchmarks of listing a Favorites folder in menu order, compared with only listing the directory.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "tests/support/order.h"
#include "vosmere/base/internal/wide_string.h"
#include "vosmere/favorites/favorites.h"

namespace vosmere::bench {
namespace {

/// A folder of `count` files. Every second one has a stored position, in reverse order.
struct Folder {
  explicit Folder(int count) {
    std::filesystem::create_directories(path);
    std::vector<test::OrderItem> items;
    for (int i = 0; i < count; ++i) {
      const std::string name = "Page " + std::to_string(i) + ".url";
      std::ofstream(path / name).close();
      if (i % 2) items.push_back({.name = name, .position = (count - i) / 2});
    }
    order = test::Order(items);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  std::filesystem::path path = std::filesystem::temp_directory_path() /
                               ("vosmere-bench-" + std::to_string(std::random_device()()));
  std::string order;
};

/// Created on first use, because a run may leave this benchmark out.
template <int kCount>
const Folder& FolderOf() {
  static const Folder folder(kCount);
  return folder;
}

template <int kCount>
void ListInOrder(benchmark::State& state) {
  const Folder& folder = FolderOf<kCount>();
  const std::u16string path = folder.path.u16string();
  CFavorites favorites;
  for ([[maybe_unused]] const auto _ : state) {
    CFavorite* list = nullptr;
    favorites.ExtractFavoritesFromOrderBuffer(
        nullptr, nullptr, Units(path), &list, nullptr, 0,
        reinterpret_cast<const unsigned char*>(folder.order.data()),
        static_cast<ULONG>(folder.order.size()));
    CFavorite::DeleteList(list);
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

template <int kCount>
void ListBare(benchmark::State& state) {
  const Folder& folder = FolderOf<kCount>();
  for ([[maybe_unused]] const auto _ : state) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path))
      paths.push_back(entry.path());
    benchmark::DoNotOptimize(paths);
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

BENCHMARK(ListInOrder<10000>)->Name("favorites/10000/vosmere");
BENCHMARK(ListBare<10000>)->Name("favorites/10000/bare listing");
BENCHMARK(ListInOrder<100000>)->Name("favorites/100000/vosmere");
BENCHMARK(ListBare<100000>)->Name("favorites/100000/bare listing");

}  // namespace
}  // namespace vosmere::bench
