// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_explanation.h"

#include <gtest/gtest.h>

namespace lumenscribe {
namespace {

// The first line of each explanation's meaning names it well enough for a table.
std::string meaningStart(const HealthExplanation& explanation) {
  return explanation.meaning.substr(0, 40);
}

TEST(HealthExplanation, structureRowDecidesFirstThenTheAssessment) {
  struct Case {
    const char* assessment;
    std::optional<std::string_view> label;
    std::optional<std::string_view> value;
    const char* meaningStart;
  };
  const char* e1 = "The file has enough JPEG/PNG-style struc";
  const char* e2 = "The image structure ends before the imag";
  const char* e3 = "The image decoder found data that does n";
  const char* e4 = "Lumenscribe can identify the PDF, but en";
  const char* e5 = "The file claims to be a PDF, but the PDF";
  const char* e6 = "The archive appears to require a passwor";
  const char* e7 = "The ZIP archive failed a non-extracting ";
  const char* e8 = "The file contains zero bytes. That can b";
  const char* e9 = "Lumenscribe cannot reliably read the fil";
  const char* e10 = "Lumenscribe found enough uncertainty tha";
  const Case cases[] = {
      {"Possible damage", "Image Structure", "Decode failed", e1},
      {"Possible damage", "Image Structure", "Incomplete", e2},
      {"Possible damage", "Image Structure", "Unexpected end of file", e2},
      {"Possible damage", "Image Structure", "Invalid data", e3},
      {"Verification limited", "Image Structure", "Header only", e10},
      {"Possible damage", "Image Structure", "No readable image", e10},
      {"Verification limited", "PDF Structure", "Locked / encrypted", e4},
      {"Possible damage", "PDF Structure", "Could not open", e5},
      {"Possible damage", "PDF Structure", "No readable pages", e5},
      {"Verification limited", "ZIP Structure", "Encrypted / password required", e6},
      {"Possible damage", "ZIP Structure", "Integrity test failed", e7},
      {"Verification limited", "ZIP Structure", "Could not test", e10},
      {"Empty file", "Structure", "No content", e8},
      {"Unreadable", "Structure", "Could not verify", e9},
      {"Possible read problem", "Basic Read Test", "Failed", e9},
      // A structure value means nothing under another row's label.
      {"Possible damage", "PDF Structure", "Decode failed", e10},
      {"Possible damage", "image structure", "Decode failed", e10},
      {"Empty file", std::nullopt, std::nullopt, e8},
      {"Unknown", std::nullopt, std::nullopt, e10},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.assessment) + " / " + std::string(c.label.value_or("-")) + " / " +
                 std::string(c.value.value_or("-")));
    EXPECT_EQ(meaningStart(explainHealth(c.assessment, c.label, c.value)), c.meaningStart);
  }
}

TEST(HealthExplanation, decodeFailureHasThreeFactsAndThreeStepsInOrder) {
  const HealthExplanation e1 = explainHealth("Possible damage", "Image Structure", "Decode failed");
  EXPECT_EQ(e1.knownFacts,
            (std::vector<std::string>{
                "The filename/type identification is believable.",
                "The file itself is readable from disk.",
                "The failure occurs when Lumenscribe asks the image decoder to decode the actual "
                "image data."}));
  EXPECT_EQ(e1.nextSteps,
            (std::vector<std::string>{
                "Try opening the original in an image viewer or the camera manufacturer's "
                "software.",
                "Re-copy the file from the original card, drive, or source if one exists.",
                "Do not treat renaming the extension as a repair."}));
  const HealthExplanation e9 = explainHealth("Unreadable", std::nullopt, std::nullopt);
  EXPECT_EQ(e9.knownFacts,
            (std::vector<std::string>{
                "The problem occurs before meaningful content inspection can finish."}));
  EXPECT_EQ(e9.nextSteps.size(), 2u);
}

TEST(HealthInspection, readsTheSectionsRowsAndOffersOnlyForUncertainVerdicts) {
  const InsightSection zip("File Health", "stethoscope",
                           {{"Assessment", "Verification limited"},
                            {"Readable", "Yes"},
                            {"ZIP Structure", "Encrypted / password required"}});
  const HealthInspection inspection = healthInspection(zip);
  EXPECT_EQ(inspection.assessment, "Verification limited");
  EXPECT_EQ(inspection.readable, "Yes");
  EXPECT_EQ(inspection.structureLabel, "ZIP Structure");
  EXPECT_EQ(inspection.structureValue, "Encrypted / password required");
  const HealthExplanation e6 =
      explainHealth("Verification limited", "ZIP Structure", "Encrypted / password required");
  EXPECT_EQ(inspection.explanation.meaning, e6.meaning);
  EXPECT_EQ(inspection.explanation.knownFacts, e6.knownFacts);
  EXPECT_EQ(inspection.explanation.nextSteps, e6.nextSteps);
  EXPECT_TRUE(offersHealthInspection(zip));

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
