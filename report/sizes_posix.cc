// Large documents of every kind, and documents and trees of large shapes, each in a process of its
// own whose stack is 512 KiB: the time and the memory that they take.
//
//   report_sizes --child NAME SIZE      one of these processes
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "report/section.h"
#include "vosmere/cpp.h"

using namespace vosmere;
using namespace vosmere::report;

namespace {

constexpr std::size_t kMega = std::size_t{1} << 20;

struct Kind {
  const char* name;
  std::string_view begin, item, end;  ///< "#" in the item is its number
};

constexpr Kind kKinds[] = {
    {"tree", "<opml version='2.0'><body>",
     "<outline text='Name #' description='two words' type='rss' xmlUrl='f#.xml'/>\n",
     "</body></opml>"},
    {"collection", "<rss version='2.0'><channel><title>c</title>",
     "<item><title>Name #</title><link>http://a.example/#?b=1&amp;c</link><description>two "
     "words</description></item>\n",
     "</channel></rss>"},
    {"collection list", "<collectionlist version='1.0'>",
     "<collection><title>Name #</title><link>http://a.example/#</link></collection>\n",
     "</collectionlist>"},
    {"items of collections", "<colctitem version='1.0'>",
     "<item colctid='c#' id='i#'>Name #</item>\n", "</colctitem>"},
    {"search engines", "<searchEnginePool version='1.0'><title>p</title>",
     "<searchEngine type='web'><title>Name "
     "#</title><queryUrl>http://a.example/#?q=%s</queryUrl></searchEngine>\n",
     "</searchEnginePool>"},
    {"tags", "<vsmtags version='1.0'><group name='g'>", "<tag name='Name#' count='2'/>\n",
     "</group></vsmtags>"},
    {"FTP sites", "<ftpsites version='1.0'>",
     "<site><title>Name #</title><host>ftp#.example</host><port>21</port></site>\n", "</ftpsites>"},
    {"toolbars", "<toolbars version='1.0'>",
     "<toolbar status='enabled'><title>Name #</title></toolbar>\n", "</toolbars>"},
    {"import of bookmarks", "<!DOCTYPE NETSCAPE-Bookmark-file-1><DL><p>\n",
     "<DT><A HREF=\"http://a.example/#?b&c\" ADD_DATE=\"1204366830\">Name #</A>\n", "</DL>"},
    {"import of a broken tree", "<opml><body>",
     "<outline text='a & b #' xmlUrl=f#.xml><p:x></outline>\n", "</body>"},
};

std::string Repeated(const Kind& kind, std::size_t bytes) {
  std::string text(kind.begin);
  text.reserve(bytes + 1024);
  for (std::size_t number = 0; text.size() < bytes; ++number)
    for (const char c : kind.item) {
      if (c == '#')
        text += std::to_string(number);
      else
        text += c;
    }
  return text += kind.end;
}

std::string Times(std::size_t count, std::string_view part) {
  std::string text;
  text.reserve(count * part.size());
  while (count-- > 0) text += part;
  return text;
}

/// Documents of extreme shapes; the element names are those of a collection, so that what loads is
/// used.
struct Shape {
  const char* name;
  const char* unit;
  std::array<std::size_t, 3> sizes;
  std::string (*make)(std::size_t size);
};

constexpr Shape kShapes[] = {
    {"levels of elements",
     "levels",
     {1'000, 100'000, 1'000'000},
     [](std::size_t size) {
       return "<opml><body>" + Times(size, "<outline text='a'>") + Times(size, "</outline>") +
              "</body></opml>";
     }},
    {"levels that stay open",
     "levels",
     {1'000, 100'000, 1'000'000},
     [](std::size_t size) { return Times(size, "<a>"); }},
    {"levels behind a document type",
     "levels",
     {1'000, 100'000, 1'000'000},
     [](std::size_t size) { return "<!DOCTYPE a []>" + Times(size, "<a>"); }},
    {"siblings",
     "elements",
     {100'000, 1'000'000, 10'000'000},
     [](std::size_t size) { return "<opml><body>" + Times(size, "<a/>") + "</body></opml>"; }},
    {"siblings behind a document type",
     "elements",
     {100'000, 1'000'000, 10'000'000},
     [](std::size_t size) {
       return "<!DOCTYPE opml []><opml><body>" + Times(size, "<a/>") + "</body></opml>";
     }},
    {"attributes of one element",
     "attributes",
     {1'000, 100'000, 1'000'000},
     [](std::size_t size) {
       std::string text = "<opml><body><outline text='a'";
       for (std::size_t i = 0; i < size; ++i) text += " k" + std::to_string(i) + "=''";
       return text + "/></body></opml>";
     }},
    {"different names",
     "names",
     {1'000, 100'000, 1'000'000},
     [](std::size_t size) {
       std::string text = "<opml><body>";
       for (std::size_t i = 0; i < size; ++i) text += "<n" + std::to_string(i) + "/>";
       return text + "</body></opml>";
     }},
    {"an attribute's value",
     "bytes",
     {kMega, 8 * kMega, 64 * kMega},
     [](std::size_t size) {
       return "<opml><body><outline text='" + std::string(size, 'x') + "'/></body></opml>";
     }},
    {"an attribute of references",
     "bytes",
     {kMega, 8 * kMega, 64 * kMega},
     [](std::size_t size) {
       return "<opml><body><outline text='" + Times(size / 5, "&amp;") + "'/></body></opml>";
     }},
    {"a text",
     "bytes",
     {kMega, 8 * kMega, 64 * kMega},
     [](std::size_t size) {
       return "<rss><channel><title>" + std::string(size, 'x') + "</title></channel></rss>";
     }},
    {"a comment",
     "bytes",
     {kMega, 8 * kMega, 64 * kMega},
     [](std::size_t size) { return "<opml><!--" + std::string(size, 'x') + "--><body/></opml>"; }},
    {"a text of other scripts",
     "bytes",
     {kMega, 8 * kMega, 64 * kMega},
     [](std::size_t size) {
       return "<rss><channel><title>" + Times(size / 3, "\xE4\xB8\xAD") +
              "</title></channel></rss>";
     }},
    {"CDATA sections",
     "sections",
     {10'000, 100'000, 1'000'000},
     [](std::size_t size) {
       return "<rss><channel><title>" + Times(size, "<![CDATA[x]]>") + "</title></channel></rss>";
     }},
};

// In the child.

/// The most memory that this process has had since `ForgetPeak`, in bytes.
std::size_t Field(const char* name) {
  std::ifstream in("/proc/self/status");
  for (std::string line; std::getline(in, line);)
    if (line.starts_with(name))
      return std::strtoull(line.c_str() + std::strlen(name), nullptr, 10) * 1024;
  return 0;
}

void ForgetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

/// What one thing took; also what the child prints.
struct Cost {
  double seconds = 0;
  std::size_t peak = 0;
  std::string outcome;
};

template <class Work>
Cost Measured(Work work) {
  ForgetPeak();
  const std::size_t before = Field("VmRSS:");
  const std::clock_t begin = std::clock();
  Cost cost;
  cost.outcome = work();
  cost.seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
  const std::size_t peak = Field("VmHWM:");
  cost.peak = peak > before ? peak - before : 0;
  return cost;
}

std::string LoadAndSave(const std::string& text) {
  const Result<AnyDocument> document = Load<AnyDocument>(Bytes(text));
  if (!document) return "refused: " + document.error().reason;
  const auto save = [](const auto& value) -> std::string {
    const Result<SavedBytes> saved = SaveToBytes(value);
    return saved ? "loads and saves" : "loads; not saved: " + saved.error().reason;
  };
  return std::visit(save, *document);
}

std::string ImportAll(const std::string& text) {
  const Result<Imported> imported = Import(Bytes(text));
  return !imported        ? "refused: " + imported.error().reason
         : imported->tree ? "is imported"
                          : "has nothing to import";
}

/// A tree of folders in folders, copied, searched, written and freed.
std::string DeepTree(std::size_t levels) {
  const Tree tree = NewTree("root");
  RNode* at = tree.get();
  for (std::size_t i = 0; i < levels; ++i) {
    CFolderNode* const folder = Add<CFolderNode>(at, "a");
    at = at->firstChild;
    if (!folder || !at) return "a level is missing";
  }
  const Tree copy = Copy(tree);
  std::size_t count = 0;
  for ([[maybe_unused]] auto& folder : Folders(copy)) ++count;
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(copy.get());
  const SystemString text(writer.GetXMLBSTR());
  if (count != levels || !text) return "a level is missing";
  const Result<SavedBytes> saved = SaveToBytes(copy);
  return saved ? "copied and saved" : "copied; not saved: " + saved.error().reason;
}

Cost CostOf(std::string_view name, std::size_t size) {
  if (name == "tree in memory") return Measured([&] { return DeepTree(size); });
  for (const Shape& shape : kShapes)
    if (name == shape.name) {
      const std::string text = shape.make(size);
      return Measured([&] { return LoadAndSave(text); });
    }
  for (const Kind& kind : kKinds)
    if (name == kind.name) {
      const std::string text = Repeated(kind, size);
      return Measured(
          [&] { return name.starts_with("import") ? ImportAll(text) : LoadAndSave(text); });
    }
  return {};
}

// In the parent.

/// Nothing when the child crashed.
std::optional<Cost> InChild(const char* name, std::size_t size) {
  constexpr rlim_t kStack = 512 * 1024;
  int ends[2];
  if (pipe(ends) != 0) return {};
  const pid_t child = fork();
  if (child == 0) {
    const rlimit limit{kStack, kStack};
    setrlimit(RLIMIT_STACK, &limit);
    dup2(ends[1], STDOUT_FILENO);
    execl("/proc/self/exe", "report_sizes", "--child", name, std::to_string(size).c_str(), nullptr);
    _exit(1);
  }
  close(ends[1]);
  std::string told;
  char piece[256];
  for (ssize_t got; (got = read(ends[0], piece, sizeof piece)) > 0;) told.append(piece, got);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  Cost cost;
  int at = 0;
  if (status != 0 || std::sscanf(told.c_str(), "%lf %zu %n", &cost.seconds, &cost.peak, &at) != 2)
    return {};
  cost.outcome = told.substr(at);
  return cost;
}

std::string Fixed(double number, const char* format) {
  char text[32];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

/// What costs several times more for each unit at the last size than at the one before is not in
/// proportion. Some more it may: the largest documents are not read by the fast path, and memory of
/// this size comes from the system each time.
bool IsInProportion(const std::vector<Cost>& costs, const std::vector<std::size_t>& sizes) {
  constexpr double kSlack = 4, kShortest = 0.3;
  constexpr std::size_t kLeast = 4 * kMega;
  const std::size_t last = sizes.size() - 1;
  const double growth =
      kSlack * static_cast<double>(sizes[last]) / static_cast<double>(sizes[last - 1]);
  return (costs[last].seconds < kShortest ||
          costs[last].seconds <= growth * costs[last - 1].seconds) &&
         (costs[last].peak < kLeast ||
          static_cast<double>(costs[last].peak) <=
              growth * static_cast<double>(std::max(costs[last - 1].peak, kMega)));
}

class Sizes {
 public:
  explicit Sizes(Section& section) : section_(section) {}

  void Measure(const char* name, const char* unit, const std::vector<std::size_t>& sizes) {
    std::vector<Cost> costs;
    for (const std::size_t size : sizes) {
      const std::optional<Cost> cost = InChild(name, size);
      if (!cost) return section_.Wrong(std::string(name) + ": crashed at " + Grouped(size));
      costs.push_back(*cost);
      const double count = static_cast<double>(size);
      section_.Row(name, Grouped(size) + " " + unit, Fixed(cost->seconds, "%.3f"),
                   Fixed(1e9 * cost->seconds / count, "%.1f"),
                   Fixed(static_cast<double>(cost->peak) / 1e6, "%.1f"),
                   Fixed(static_cast<double>(cost->peak) / count, "%.2f"), cost->outcome);
    }
    if (!IsInProportion(costs, sizes))
      section_.Wrong(std::string(name) + ": not in proportion to the size");
    measured_.push_back({name, costs, sizes});
  }

  /// Blocks of lines for the plot: size, seconds, peak.
  void WriteData(const char* path) const {
    std::ofstream out(path);
    for (const auto& [name, costs, sizes] : measured_) {
      out << '"' << name << "\"\n";
      for (std::size_t i = 0; i < sizes.size(); ++i)
        out << sizes[i] << '\t' << costs[i].seconds << '\t'
            << static_cast<double>(costs[i].peak) / 1e6 << '\n';
      out << "\n\n";
    }
  }

 private:
  struct Measurement {
    const char* name;
    std::vector<Cost> costs;
    std::vector<std::size_t> sizes;
  };

  Section& section_;
  std::vector<Measurement> measured_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::string_view(argv[1]) == "--child") {
    const Cost cost = CostOf(argv[2], std::strtoull(argv[3], nullptr, 10));
    std::printf("%f %zu %s", cost.seconds, cost.peak, cost.outcome.c_str());
    return cost.outcome.empty();
  }
  Section section(argc, argv, "Depth, width and size");
  const std::size_t divisor = section.isShort() ? 16 : 1;
  section.Say(
      "Each row is a process of its own with a stack of 512 KiB that loads a document from memory, "
      "and saves it to "
      "memory again if it loads, or imports it. Time is that of the processor for both, memory the "
      "peak beyond what "
      "the process had with the document in it. A document that is refused has to be refused in "
      "proportion, too.");
  section.Say("Documents of every kind with many items:");
  const auto head = [&] {
    section.Row("What", "Size", "Seconds", "ns for each", "Peak, MB", "Bytes for each", "Outcome");
  };
  head();
  Sizes documents(section), shapes(section);
  for (const Kind& kind : kKinds)
    documents.Measure(kind.name, "bytes",
                      {kMega / divisor, 10 * kMega / divisor, 100 * kMega / divisor});
  section.Say("Extreme shapes:");
  head();
  for (const Shape& shape : kShapes)
    shapes.Measure(
        shape.name, shape.unit,
        {shape.sizes[0], shape.sizes[1], section.isShort() ? 2 * shape.sizes[1] : shape.sizes[2]});
  shapes.Measure("tree in memory", "levels", {1'000, 100'000 / divisor, 1'000'000 / divisor});
  if (section.dataFile()) documents.WriteData(section.dataFile());
  return section.End();
}
