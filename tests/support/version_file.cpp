#include "tests/support/version_file.h"

#include <cstddef>

namespace qorgen::tests {
namespace {

void Put16(std::string& out, std::uint32_t value) {
  out += static_cast<char>(value & 0xFF);
  out += static_cast<char>(value >> 8 & 0xFF);
}
void Put32(std::string& out, std::uint32_t value) {
  Put16(out, value & 0xFFFF);
  Put16(out, value >> 16);
}
void Pad(std::string& out, std::size_t unit) {
  out.resize((out.size() + unit - 1) / unit * unit);
}

void PutName(std::string& out, const char16_t* name) {
  for (; *name != 0; ++name) Put16(out, *name);
  Put16(out, 0);
}

// One level of the block: head, name, value, children, each on a multiple of 4.
std::string Level(const char16_t* name, const std::string& value, std::uint32_t value_length,
                  std::uint32_t type, const std::string& children) {
  std::string out(2, '\0');
  Put16(out, value_length);
  Put16(out, type);
  PutName(out, name);
  Pad(out, 4);
  out += value;
  if (!children.empty()) {
    Pad(out, 4);
    out += children;
  }
  out[0] = static_cast<char>(out.size() & 0xFF);
  out[1] = static_cast<char>(out.size() >> 8);
  Pad(out, 4);
  return out;
}

std::string MakeBlock(const VersionFile& version) {
  std::string fixed;
  Put32(fixed, 0xFEEF04BD);
  Put32(fixed, 0x00010000);
  Put32(fixed, version.file_ms);
  Put32(fixed, version.file_ls);
  Put32(fixed, version.product_ms);
  Put32(fixed, version.product_ls);
  fixed.resize(52);

  std::string product;
  PutName(product, u"帳簿");
  std::string children = Level(u"StringFileInfo", "", 0, 1,
                               Level(u"041104b0", "", 0, 1, Level(u"ProductName", product, 3, 1, "")));
  if (version.with_translation) {
    std::string languages;
    Put16(languages, 0x0411);
    Put16(languages, 1200);
    children += Level(u"VarFileInfo", "", 0, 1, Level(u"Translation", languages, 4, 0, ""));
  }
  return Level(u"VS_VERSION_INFO", fixed, 52, 0, children);
}

// A directory of one numbered entry.
void PutDirectory(std::string& out, std::uint32_t id, std::uint32_t target) {
  out.append(12, '\0');
  Put16(out, 0);
  Put16(out, 1);
  Put32(out, id);
  Put32(out, target);
}

}  // namespace

std::string MakeVersionFile(const VersionFile& version) {
  constexpr std::uint32_t kAddress = 0x1000;
  constexpr std::uint32_t kFileOffset = 0x200;
  constexpr std::uint32_t kSubdirectory = 0x80000000;

  const std::string block = MakeBlock(version);
  std::string resources;
  PutDirectory(resources, 16, kSubdirectory | 24);
  PutDirectory(resources, 1, kSubdirectory | 48);
  PutDirectory(resources, 0x0411, 72);
  Put32(resources, kAddress + 88);
  Put32(resources, static_cast<std::uint32_t>(block.size()));
  resources.resize(88);
  resources += block;
  const auto size = static_cast<std::uint32_t>(resources.size());

  std::string file = "MZ";
  file.resize(0x3C);
  Put32(file, 64);
  file += std::string("PE\0\0", 4);
  Put16(file, version.is_64_bit ? 0x8664 : 0x014C);
  Put16(file, 1);
  file.append(12, '\0');
  const std::uint32_t fixed_size = version.is_64_bit ? 112 : 96;
  Put16(file, fixed_size + 16 * 8);
  Put16(file, 0x2102);
  const std::size_t optional = file.size();
  Put16(file, version.is_64_bit ? 0x20B : 0x10B);
  file.resize(optional + fixed_size - 4);
  Put32(file, 16);
  file.resize(file.size() + 2 * 8);
  Put32(file, kAddress);
  Put32(file, size);
  file.resize(optional + fixed_size + 16 * 8);
  file += std::string(".rsrc\0\0\0", 8);
  Put32(file, size);
  Put32(file, kAddress);
  Put32(file, size);
  Put32(file, kFileOffset);
  file.append(16, '\0');
  file.resize(kFileOffset);
  return file + resources;
}

}  // namespace qorgen::tests
