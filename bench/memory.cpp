// What a new force takes, and what that consists of.

#include <vector>

#include "bench/model.h"
#include "bench/sections.h"

namespace bench {
namespace {

constexpr std::size_t kObjects = 10'000;

/// Bytes of all blocks that are in use on the heaps of the process, with what each heap notes of
/// them.
std::size_t bytes_in_use() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(std::size(heaps), heaps);
  std::size_t bytes = 0;
  for (DWORD heap = 0; heap < count; ++heap) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[heap], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData + entry.cbOverhead;
    }
  }
  return bytes;
}

/// Bytes that each of many objects takes.
template <class Create>
double bytes_of(Create create) {
  using Object = decltype(create());
  std::vector<Object> objects(kObjects);
  // Blocks that lay free at first are used up, and what is made once is made.
  for (Object& object : objects) object = create();
  objects.assign(kObjects, Object());
  const std::size_t before = bytes_in_use();
  for (Object& object : objects) object = create();
  return static_cast<double>(bytes_in_use() - before) / kObjects;
}

void print_bytes(const char* what, double bytes, double wanted = kNothingWanted) {
  std::printf("  %-50s %9.0f", what, bytes);
  if (wanted != kNothingWanted) std::printf(" %25.0f", wanted);
  std::printf("\n");
}

}  // namespace

void run_memory(const Options&) {
  const ScratchFile file;
  const Model model(file);
  const Factory<INodalForce> forces(__uuidof(NodalForce));
  const Factory<IVertex> vertices(__uuidof(HostVertex));
  const Factory<ILoadSets> load_sets(__uuidof(HostLoadSets));

  const double all = bytes_of([&] { return forces.create(); });
  const double vertex = bytes_of([&] { return vertices.create(); });
  const double sets = bytes_of([&] { return load_sets.create(); });
  const double marshaler = bytes_of([] {
    com::Ptr<IUnknown> made;
    com::check(CoCreateFreeThreadedMarshaler(nullptr, made.put()));
    return made;
  });
  std::printf("\n%-52s %9s %25s\n", "Memory of a new force", "bytes", "wanted");
  print_bytes("force with its vertex and its collection of sets", all, 600);
  print_bytes("vertex", vertex);
  print_bytes("collection of sets, empty", sets);
  print_bytes("marshaler of the force", marshaler);
  print_bytes("the force itself", all - vertex - sets - marshaler);
}

}  // namespace bench
