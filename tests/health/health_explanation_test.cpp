// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_explanation.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "health/health_assessment.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

const std::filesystem::path kFixtures = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health";

InsightSection healthSection(const platform::OpenedItem& item,
                             platform::DecoderClient& decoder = test::sharedDecoder()) {
  Accumulators accumulators;
  assessFileHealth(item, decoder, accumulators);
  return accumulators.sections.at(0);
}

InsightSection healthSection(const std::filesystem::path& file) {
  return healthSection(test::openedItem(file));
}

// The row that carries the check's outcome: the one after "Assessment" and "Readable".
const InsightRow& structureRow(const InsightSection& section) { return section.rows.at(2); }

// Every structure row the health check writes, one case per label, taken from what the check
// wrote for the fixtures of every kind, an empty file, a file that shrank after it was opened, and
// a decoder that cannot start.
TEST(HealthExplanation, knowsEveryStructureRowTheHealthCheckWrites) {
  test::TempDir dir;
  std::vector<InsightSection> sections;
  for (const auto& folder : {kFixtures, test::kData / "type_health"}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      sections.push_back(healthSection(entry.path()));
    }
  }
  const auto file = dir.write("shrinks.txt", std::string(100, 'a'));
  const platform::OpenedItem shrunk = test::openedItem(file);
  std::filesystem::resize_file(file, 10);
  sections.push_back(healthSection(shrunk));
  platform::DecoderClient missing({"/nonexistent/lumenscribe-decoder", std::chrono::seconds(5)});
  sections.push_back(healthSection(test::openedItem(kFixtures / "intact.jpg"), missing));

  std::map<std::string, InsightSection> byLabel;
  for (const InsightSection& section : sections)
    byLabel.emplace(structureRow(section).label, section);
  ASSERT_GE(byLabel.size(), 7u);
  for (const auto& [label, section] : byLabel) {
    SCOPED_TRACE(label);
    const HealthInspection inspection = healthInspection(section);
    EXPECT_EQ(inspection.structureLabel, label);
    EXPECT_EQ(inspection.structureValue, structureRow(section).value);
  }
}

// Files that fail for the same reason share one explanation; different reasons get different
// ones, each naming its situation; what no structure row explains gets the general one.
TEST(HealthExplanation, aFailingFileGetsTheExplanationOfItsOwnSituation) {
  test::TempDir dir;
  const auto shrinking = dir.write("shrinks.txt", std::string(100, 'a'));
  const platform::OpenedItem shrunk = test::openedItem(shrinking);
  std::filesystem::resize_file(shrinking, 10);
  struct Case {
    InsightSection section;
    const char* situation;  // a word that the explanation of the situation uses
  };
  const Case cases[] = {
      {healthSection(kFixtures / "truncated_at_50_percent.jpg"), "interrupted"},
      {healthSection(kFixtures / "truncated_in_header.jpg"), "interrupted"},
      {healthSection(kFixtures / "cut_short.png"), "interrupted"},
      {healthSection(kFixtures / "scan_data_overwritten.jpg"), "conform"},
      {healthSection(kFixtures / "broken_idat_crc.png"), "conform"},
      {healthSection(kFixtures / "encrypted_user_password.pdf"), "encryption"},
      {healthSection(kFixtures / "not_a_pdf.pdf"), "PDF reader"},
      {healthSection(kFixtures / "zero_pages.pdf"), "PDF reader"},
      {healthSection(kFixtures / "password_protected.zip"), "password"},
      {healthSection(kFixtures / "truncated.zip"), "integrity"},
      {healthSection(kFixtures / "empty.jpg"), "zero bytes"},
      {healthSection(shrunk), "cannot reliably read"},
      {healthSection(kFixtures / "photo.jpg"), nullptr},  // no readable image: no precise story
      {healthSection(kFixtures / "unsupported.bmp"), nullptr},
  };
  const HealthExplanation general = explainHealth("Unknown", std::nullopt, std::nullopt);
  std::map<std::string, std::string> meaningOf;  // situation -> meaning
  for (const Case& c : cases) {
    SCOPED_TRACE(structureRow(c.section).label + ": " + structureRow(c.section).value);
    ASSERT_TRUE(offersHealthInspection(c.section));
    const HealthExplanation explanation = healthInspection(c.section).explanation;
    EXPECT_FALSE(explanation.knownFacts.empty());
    EXPECT_FALSE(explanation.nextSteps.empty());
    if (c.situation == nullptr) {
      EXPECT_EQ(explanation.meaning, general.meaning);
      continue;
    }
    EXPECT_NE(explanation.meaning.find(c.situation), std::string::npos) << explanation.meaning;
    const auto [known, added] = meaningOf.emplace(c.situation, explanation.meaning);
    EXPECT_EQ(known->second, explanation.meaning);  // one reason, one explanation
  }
  std::set<std::string> distinct;
  for (const auto& [situation, meaning] : meaningOf) distinct.insert(meaning);
  EXPECT_EQ(distinct.size(), meaningOf.size());
  EXPECT_FALSE(distinct.contains(general.meaning));
}

TEST(HealthInspection, readsTheSectionsRowsAndOffersOnlyForUncertainVerdicts) {
  const InsightSection zip("File Health", "stethoscope",
                           {{"Assessment", "Verification limited"},
                            {"Readable", "Yes"},
                            {"ZIP Structure", "Encrypted / password required"}});
  const HealthInspection inspection = healthInspection(zip);
  EXPECT_EQ(inspection.assessment, "Verification limited");
  EXPECT_EQ(inspection.readable, "Yes");
  EXPECT_TRUE(offersHealthInspection(zip));
  // A structure value means nothing under another row's label.
  EXPECT_EQ(
      explainHealth("Possible damage", "PDF Structure", "Encrypted / password required").meaning,
      explainHealth("Unknown", std::nullopt, std::nullopt).meaning);

  const InsightSection bare("File Health", "stethoscope", {{"Other", "x"}});
  const HealthInspection unknown = healthInspection(bare);
  EXPECT_EQ(unknown.assessment, "Unknown");
  EXPECT_EQ(unknown.readable, "Unknown");
  EXPECT_EQ(unknown.structureLabel, std::nullopt);
  EXPECT_FALSE(offersHealthInspection(bare));

  const InsightSection intact(
      "File Health", "checkmark.shield.fill",
      {{"Assessment", "Looks intact"}, {"Readable", "Yes"}, {"Image Structure", "Complete"}});
  EXPECT_FALSE(offersHealthInspection(intact));
}

}  // namespace
}  // namespace lumenscribe
