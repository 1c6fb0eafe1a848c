#include "soak.h"
#include "software_file.h"
#include "temp_folder.h"

namespace VARNEL_TEST {

namespace {

constexpr size_t MOST_KIBIBYTES = 96 * 1024;

std::string Package() {
  SoftwareFile content;
  content.payload = "\n[File Description]\nmain.bin:board:3:4:5:6:7:8\nboot.bin:board:3:4:5:6:7:8\n[END]\n";
  return content.Bytes();
}

std::string Figures(const Child& child) {
  return ": status " + std::to_string(child.status) + ", " + std::to_string(child.seconds) + " s, " +
         std::to_string(child.kibibytes) + " KiB at most";
}

}  // namespace

// Every tenth file is damaged.
void SoakPackages(const SoakSize& size, const std::string& varnel) {
  const TempFolder folder;
  const std::string good = Package();
  std::string bad = good;
  bad[20] = static_cast<char>(bad[20] + 1);
  for (size_t i = 0; i < size.packages; ++i)
    folder.Write("package-" + std::to_string(i) + ".pkg", i % 10 == 0 ? bad : good);
  for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"--json"}, {"--quiet"}}) {
    std::vector<std::string> command{varnel, "package", folder.Path()};
    command.insert(command.end(), options.begin(), options.end());
    const Child child = RunChild(command);
    Expect(child.status == 1 && child.errors.empty() && (!MEMORY_COUNTS || child.kibibytes < MOST_KIBIBYTES),
           std::to_string(size.packages) + " packages in a folder" + (options.empty() ? "" : ", " + options[0]) +
               Figures(child));
  }
}

}  // namespace VARNEL_TEST
