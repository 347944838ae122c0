// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/system_metadata.h"

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "identity/formatters.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using Array = MetadataValue::Array;
using test::Rows;

std::string fixture(const char* name) { return test::fileBytes(test::kData / "system" / name); }

Rows rowsOf(const Accumulators& accumulators, std::string_view title) {
  return test::rowsOf(accumulators.sections, title);
}

// Sets an extended attribute, or says why the file system would not.
int setAttribute(const std::filesystem::path& path, const char* name, std::string_view value) {
  return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0 ? 0 : errno;
}

const Timestamp kDownloaded{std::chrono::seconds(1709649015)};

TEST(SystemMetadata, valueTextsFollowTheAttribute) {
  const struct {
    MetadataValue value;
    const char* attribute;
    std::string text;
  } cases[] = {
      {kDownloaded, "kMDItemDownloadedDate", mediumDateText(kDownloaded)},
      {Array{"https://a.example/x", "https://a.example/"}, "kMDItemWhereFroms",
       "https://a.example/x, https://a.example/"},
      {Array{}, "kMDItemAuthors", ""},
      {125.6, "kMDItemDurationSeconds", "2:06"},
      {std::int64_t{3600}, "kMDItemDurationSeconds", "1:00:00"},
      {127.5, "kMDItemAudioBitRate", "128 kbps"},
      {std::int64_t{8000}, "kMDItemVideoBitRate", "8000 kbps"},
      // The units belong to those attributes only.
      {125.6, "kMDItemPixelWidth", "125.6"},
      {"2:06", "kMDItemDurationSeconds", "2:06"},
      {std::int64_t{501}, "kMDItemFSOwnerUserID", "501"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.attribute);
    EXPECT_EQ(spotlightValueText(test.value, test.attribute), test.text);
  }
}

TEST(SystemMetadata, rowsComeInTheTablesOrderAndTheOriginRaisesItsFinding) {
  const SystemAttributes attributes{
      {"kMDItemFSOwnerUserID", std::int64_t{1000}},
      {"kMDItemKind", "PDF document"},
      {"kMDItemContentTypeTree", Array{"application/pdf", "application/octet-stream"}},
      {"kMDItemTitle", "Quarterly report"},
      {"kMDItemAuthors", ""},  // a value without text makes no row
      {"kMDItemDurationSeconds", 125.6},
      {"kMDItemDownloadedDate", kDownloaded},
      {"kMDItemWhereFroms", Array{"https://example.com/r.pdf", "https://example.com/"}},
  };
  Accumulators accumulators;
  addSystemMetadata(attributes, accumulators);
  EXPECT_EQ(test::block(accumulators.sections, "System Metadata"),
            "Kind: PDF document\nTitle: Quarterly report\n"
            "Type Family: application/pdf, application/octet-stream\nDuration: 2:06\n"
            "Owner User ID: 1000\n");
  EXPECT_EQ(test::block(accumulators.sections, "File Origin"),
            "Where From: https://example.com/r.pdf, https://example.com/\nDownloaded: " +
                mediumDateText(kDownloaded) + "\n");
  EXPECT_EQ(accumulators.summaryItems,
            (std::vector<std::string>{"System Metadata", "File Origin"}));
  ASSERT_EQ(accumulators.findings.size(), 1u);
  EXPECT_EQ(accumulators.findings[0].title, "Download source is recorded");
  EXPECT_EQ(accumulators.findings[0].level, PrivacyLevel::neutral);
  EXPECT_EQ(accumulators.rawMetadata.at("Spotlight Where From"),
            "https://example.com/r.pdf, https://example.com/");
  EXPECT_EQ(accumulators.rawMetadata.at("Spotlight Type Family"),
            "application/pdf, application/octet-stream");
  EXPECT_FALSE(accumulators.rawMetadata.contains("Spotlight Authors"));

  // A download date without a source: the origin section, but no finding.
  Accumulators dateOnly;
  addSystemMetadata({{"kMDItemDownloadedDate", kDownloaded}}, dateOnly);
  EXPECT_EQ(rowsOf(dateOnly, "File Origin"), (Rows{{"Downloaded", mediumDateText(kDownloaded)}}));
  EXPECT_EQ(rowsOf(dateOnly, "System Metadata"), Rows{});
  EXPECT_TRUE(dateOnly.findings.empty());

  // Nothing known: no section at all.
  Accumulators nothing;
  addSystemMetadata({}, nothing);
  EXPECT_TRUE(nothing.sections.empty());
  EXPECT_TRUE(nothing.summaryItems.empty());
}

TEST(SystemMetadata, decodesTheAttributesLinuxAndMacsRecord) {
  test::TempDir dir;
  const auto item = test::openedItem(dir.write("report.pdf", "%PDF-1.4\n"));
  const std::string longUrl = "https://example.com/" + std::string(64 * 1024 - 20, 'a');
  const struct {
    const char* name;
    platform::ExtendedAttributes attributes;
    const char* attribute;
    std::optional<MetadataValue> value;
  } cases[] = {
      {"the download address, then the referring page",
       {{"user.xdg.referrer.url", "https://example.com/"},
        {"user.xdg.origin.url", "https://example.com/r.pdf"}},
       "kMDItemWhereFroms",
       Array{"https://example.com/r.pdf", "https://example.com/"}},
      {"Linux's source before a Mac's",
       {{"user.xdg.origin.url", "https://linux.example/"},
        {"user.com.apple.metadata:kMDItemWhereFroms", fixture("where_froms.bplist")}},
       "kMDItemWhereFroms",
       Array{"https://linux.example/"}},
      {"a Mac's source list",
       {{"user.com.apple.metadata:kMDItemWhereFroms", fixture("where_froms.bplist")}},
       "kMDItemWhereFroms",
       Array{"https://example.com/files/report.pdf", "https://example.com/downloads"}},
      {"a Mac's list of one download date is the date",
       {{"com.apple.metadata:kMDItemDownloadedDate", fixture("downloaded_date.bplist")}},
       "kMDItemDownloadedDate",
       kDownloaded},
      {"a property list that does not parse",
       {{"user.com.apple.metadata:kMDItemDownloadedDate", fixture("truncated.bplist")}},
       "kMDItemDownloadedDate",
       std::nullopt},
      {"bytes that are not UTF-8 are replaced",
       {{"user.dublincore.title", "Caf\xe9 \xff"}},
       "kMDItemTitle",
       "Caf\uFFFD \uFFFD"},
      {"a value ends at its first NUL",
       {{"user.xdg.creator", std::string("Firefox\0junk", 12)}},
       "kMDItemCreator",
       "Firefox"},
      {"an empty value is no value",
       {{"user.dublincore.creator", ""}},
       "kMDItemAuthors",
       std::nullopt},
      {"the longest value Linux allows",
       {{"user.xdg.origin.url", longUrl}},
       "kMDItemWhereFroms",
       Array{longUrl}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    const SystemAttributes attributes = systemAttributes(item, test.attributes);
    const auto found = attributes.find(test.attribute);
    EXPECT_EQ(found == attributes.end() ? std::nullopt : std::optional(found->second), test.value);
  }
  // What the MIME database and the file system say is there without any attribute.
  const SystemAttributes facts = systemAttributes(item, {});
  EXPECT_EQ(facts.at("kMDItemContentType"), MetadataValue("application/pdf"));
  EXPECT_EQ(facts.at("kMDItemContentTypeTree"),
            MetadataValue(Array{"application/pdf", "application/octet-stream"}));
  EXPECT_EQ(facts.at("kMDItemDisplayName"), MetadataValue("report.pdf"));
  EXPECT_EQ(facts.at("kMDItemFSOwnerUserID"), MetadataValue(std::int64_t{::geteuid()}));
  EXPECT_EQ(facts.size(), 5u);
}

TEST(SystemMetadata, readsTheAttributesThroughTheOpenedItem) {
  test::TempDir dir;
  const auto file = dir.write("setup.tar.gz", "not really");
  if (const int error = setAttribute(file, "user.xdg.origin.url", "https://example.com/setup");
      error != 0) {
    GTEST_SKIP() << "no user extended attributes here: " << std::strerror(error);
  }
  ASSERT_EQ(setAttribute(file, "user.xdg.referrer.url", "https://example.com/"), 0);
  ASSERT_EQ(setAttribute(file, "user.dublincore.title", "Set\xffup"), 0);
  ASSERT_EQ(setAttribute(file, "user.com.apple.metadata:kMDItemDownloadedDate",
                         fixture("downloaded_date.bplist")),
            0);
  ASSERT_EQ(setAttribute(file, "user.unrelated", "ignored"), 0);
  const auto item = test::openedItem(file);
  // Renamed after the open: the attributes still come from the opened file.
  std::filesystem::rename(file, dir.path() / "renamed");

  Accumulators accumulators;
  analyzeSystemMetadata(item, accumulators);
  const Rows system = rowsOf(accumulators, "System Metadata");
  ASSERT_GE(system.size(), 2u);
  EXPECT_EQ(system[1], (std::pair<std::string, std::string>{"Title", "Set\uFFFDup"}));
  EXPECT_EQ(rowsOf(accumulators, "File Origin"),
            (Rows{{"Where From", "https://example.com/setup, https://example.com/"},
                  {"Downloaded", mediumDateText(kDownloaded)}}));
  ASSERT_EQ(accumulators.findings.size(), 1u);

  // A folder carries its own.
  ASSERT_EQ(setAttribute(dir.path(), "user.xdg.origin.url", "https://example.com/folder"), 0);
  Accumulators folder;
  analyzeSystemMetadata(test::openedItem(dir.path()), folder);
  EXPECT_EQ(rowsOf(folder, "File Origin"), (Rows{{"Where From", "https://example.com/folder"}}));
  EXPECT_EQ(rowsOf(folder, "System Metadata").at(0),
            (std::pair<std::string, std::string>{"Kind", "folder"}));
}

TEST(SystemMetadata, aFileSystemWithoutExtendedAttributesLeavesTheFacts) {
  // procfs keeps no extended attributes: setting one fails (ENOTSUP, or EACCES before that
  // for anyone but root).
  const auto item = test::openedItem("/proc/version");
  ASSERT_NE(setAttribute("/proc/version", "user.test", "x"), 0);
  Accumulators accumulators;
  analyzeSystemMetadata(item, accumulators);
  ASSERT_EQ(accumulators.sections.size(), 1u);
  EXPECT_EQ(accumulators.sections[0].title, "System Metadata");
  const Rows rows = rowsOf(accumulators, "System Metadata");
  EXPECT_EQ(rows.at(0).first, "Kind");
  EXPECT_EQ(rows.back(), (std::pair<std::string, std::string>{"Owner User ID", "0"}));
  EXPECT_TRUE(accumulators.findings.empty());
}

}  // namespace
}  // namespace lumenscribe
