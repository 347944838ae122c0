// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/type_verification.h"

#include <gtest/gtest.h>

#include <span>

#include "identity/content_detection.h"
#include "platform/mime_database.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using test::TempDir;

std::string fixture(const std::string& name) {
  return test::fileBytes(test::kData / "health" / name);
}

test::Rows rowsOf(const Accumulators& accumulators) {
  return test::rowsOf(accumulators.sections, "Type Verification");
}

// Inspected as the driver inspects it: the opened item's head bytes and desktop type.
Accumulators verify(const std::filesystem::path& file) {
  Accumulators accumulators;
  verifyFileType(test::openedItem(file), accumulators);
  return accumulators;
}

// The same file judged with a desktop type of the test's choosing.
void verifyWith(const std::filesystem::path& file, const std::optional<ContentType>& platformType,
                Accumulators& accumulators) {
  const platform::OpenedItem item = test::openedItem(file);
  verifyFileType(item.url(), detectContentSignature(item), platformType, accumulators);
}

TEST(TypeVerification, renamedFileIsAMismatchWithEveryRowRawEntryAndWarning) {
  TempDir dir;
  const Accumulators renamed = verify(dir.write("report.pdf", fixture("intact.zip")));
  EXPECT_EQ(renamed.sections.at(0).systemImage, "exclamationmark.triangle.fill");
  EXPECT_EQ(test::block(renamed.sections, "Type Verification"),
            "Filename Extension: .pdf\nExtension Suggests: PDF document\nMIME Type: PDF document\n"
            "Content Signature: ZIP archive\nType Match: Mismatch detected\n");
  EXPECT_EQ(test::block(renamed.rawMetadata),
            "Type Verification Expected Type: application/pdf\nType Verification Extension: pdf\n"
            "Type Verification Result: Mismatch detected\n"
            "Type Verification Signature: ZIP archive\n"
            "Type Verification macOS Type: application/pdf\n");
  EXPECT_EQ(renamed.summaryItems, std::vector<std::string>{"Type Verification"});
  ASSERT_EQ(renamed.findings.size(), 1u);
  EXPECT_EQ(renamed.findings[0].title, "File type does not match its name");
  EXPECT_EQ(renamed.findings[0].level, PrivacyLevel::sensitive);

  const Accumulators honest = verify(dir.write("photo.JPG", fixture("intact.jpg")));
  EXPECT_EQ(honest.sections.at(0).systemImage, "checkmark.seal.fill");
  EXPECT_EQ(rowsOf(honest).front().second, ".jpg");
  EXPECT_EQ(honest.rawMetadata.at("Type Verification Extension"), "jpg");
  EXPECT_EQ(honest.rawMetadata.at("Type Verification Result"), "No obvious mismatch");
  EXPECT_TRUE(honest.findings.empty());

  // Lower-casing is not limited to ASCII letters.
  const Accumulators accented = verify(dir.write("map.\u00C9PS", "A note.\n"));
  EXPECT_EQ(rowsOf(accented).front().second, ".\u00E9ps");
  EXPECT_EQ(accented.rawMetadata.at("Type Verification Extension"), "\u00E9ps");
}

TEST(TypeVerification, contentThatContradictsEveryTypeOfTheNameIsAMismatch) {
  TempDir dir;
  struct Case {
    const char* name;
    std::string content;
    const char* signature;  // raw "Type Verification Signature"
    const char* expected;   // raw "Type Verification Expected Type"
    bool mismatch;
  };
  const Case cases[] = {
      // Two different pictures: each has its own decoder and its own risks.
      {"picture.jpg", fixture("intact.png"), "PNG image", "image/jpeg", true},
      {"notes.txt", fixture("intact.png"), "PNG image", "text/plain", true},
      {"archive.zip", "Just words, not an archive.\n", "Plain text", "application/zip", true},
      {"photo.jpg", "A note, not a photograph.\n", "Plain text", "image/jpeg", true},
      // Prose that fails the printable ratio has no signature, so it raises nothing.
      {"prose.txt", std::string(40, 'x') + std::string(10, '\xC3'), "Unknown", "text/plain", false},
      // An extension the database does not know claims nothing.
      {"data.qqqzz", fixture("intact.png"), "PNG image", "Unknown", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Accumulators result = verify(dir.write(c.name, c.content));
    EXPECT_EQ(result.rawMetadata.at("Type Verification Signature"), c.signature);
    EXPECT_EQ(result.rawMetadata.at("Type Verification Expected Type"), c.expected);
    EXPECT_EQ(result.rawMetadata.at("Type Verification Result"),
              c.mismatch ? "Mismatch detected" : "No obvious mismatch");
    EXPECT_EQ(result.findings.size(), c.mismatch ? 1u : 0u);
    const auto rows = rowsOf(result);
    const bool suggests = std::any_of(rows.begin(), rows.end(), [](const auto& row) {
      return row.first == "Extension Suggests";
    });
    EXPECT_EQ(suggests, std::string(c.expected) != "Unknown");
  }
}

const std::filesystem::path kTypeHealth = test::kData / "type_health";

TEST(TypeVerification, everydayFilesFitTheirNamesAndDisguisedOnesDoNot) {
  // Photos and sounds in ISO media boxes; formats written as text, some filed elsewhere by
  // the MIME database (it knows .pub as Publisher only); a gzip-compressed SVG is gzip, and
  // its name says so; bytes before a ZIP do not hide it; every ZIP-based format is a ZIP.
  const std::pair<const char*, const char*> fitting[] = {
      {"photo.heic", "HEIF image"},
      {"photo.avif", "AVIF image"},
      {"generic_brand.m4a", "MP4 / QuickTime media"},
      {"clip.mp4", "MP4 / QuickTime media"},
      {"certificate.crt", "Plain text"},
      {"checkers.xbm", "Plain text"},
      {"checkers.xpm", "XPM image"},
      {"metrics.afm", "Plain text"},
      {"teal_ascii.ppm", "PPM image"},
      {"id_ed25519.pub", "Plain text"},
      {"script_not_executable.txt", "shell script"},
      {"square.svgz", "Gzip archive"},
      {"tone.ogg", "Ogg Vorbis audio"},
      {"prepended_bytes.zip", "ZIP archive"},
      {"archive_named.docx", "ZIP archive"},
      {"blank_before_header.pdf", "PDF document"}};
  const std::pair<const char*, const char*> disguised[] = {
      {"jpeg_named.png", "JPEG image"},
      {"pdf_named.jpg", "PDF document"},
      {"gzip_named.txt", "Gzip archive"},
      {"zip_named.txt", "ZIP archive"},
      {"truncated_png_named.txt", "PNG image"}};
  for (const bool mismatch : {false, true}) {
    for (const auto& [file, signature] :
         mismatch ? std::span<const std::pair<const char*, const char*>>(disguised)
                  : std::span<const std::pair<const char*, const char*>>(fitting)) {
      SCOPED_TRACE(file);
      const Accumulators result = verify(kTypeHealth / file);
      EXPECT_EQ(result.rawMetadata.at("Type Verification Signature"), signature);
      EXPECT_EQ(result.rawMetadata.at("Type Verification Result"),
                mismatch ? "Mismatch detected" : "No obvious mismatch");
      EXPECT_EQ(result.findings.size(), mismatch ? 1u : 0u);
    }
  }
}

TEST(TypeVerification, aProgramBehindAnotherNameGetsTheStrongestWarning) {
  const std::string programDetail =
      "The filename extension suggests one kind of file, but the content is a program (";
  for (const char* file : {"program_named.txt", "program_named.png", "script_executable.txt"}) {
    SCOPED_TRACE(file);
    const Accumulators result = verify(kTypeHealth / file);
    EXPECT_EQ(result.rawMetadata.at("Type Verification Result"), "Mismatch detected");
    ASSERT_EQ(result.findings.size(), 1u);
    EXPECT_EQ(result.findings[0].title, "File type does not match its name");
    EXPECT_EQ(result.findings[0].level, PrivacyLevel::sensitive);
    EXPECT_EQ(result.findings[0].detail.substr(0, programDetail.size()), programDetail);
  }
  // A program named as one is what it says.
  TempDir dir;
  const std::string program = test::fileBytes("/bin/true");
  EXPECT_EQ(verify(dir.write("libthing.so", program)).rawMetadata.at("Type Verification Result"),
            "No obvious mismatch");
  // A binary behind a script's name is not: a script is read before it is run.
  EXPECT_EQ(verify(dir.write("thing.py", program)).rawMetadata.at("Type Verification Result"),
            "Mismatch detected");
}

TEST(TypeVerification, aNameWithSeveralTypesShowsTheOneTheContentFits) {
  TempDir dir;
  // .otf is an OpenType font and an ODF template; "OTTO" opens an OpenType font.
  using namespace std::string_literals;
  const auto font =
      dir.write("face.otf", "OTTO\0\x0a\0\x80\0\x03\0 CFF "s + std::string(200, '\0'));
  const Accumulators result = verify(font);
  EXPECT_EQ(result.rawMetadata.at("Type Verification Result"), "No obvious mismatch");
  EXPECT_EQ(result.rawMetadata.at("Type Verification Expected Type"), "font/otf");
  // .ogg stands for six kinds of Ogg; a sound is shown as one of the sounds.
  const Accumulators ogg = verify(kTypeHealth / "tone.ogg");
  EXPECT_EQ(ogg.rawMetadata.at("Type Verification Expected Type").substr(0, 6), "audio/");
}

TEST(TypeVerification, platformTypeCanClearASuspicionButNeverRaiseOne) {
  TempDir dir;
  const auto zipAsText = dir.write("bundle.txt", fixture("intact.zip"));
  const auto zipType = platform::contentTypeForName("application/zip");
  const auto pdfType = platform::contentTypeForName("application/pdf");
  ASSERT_TRUE(zipType && pdfType);
  struct Case {
    std::filesystem::path file;
    std::optional<ContentType> platformType;
    bool mismatch;
  };
  const Case cases[] = {
      {zipAsText, zipType, false},      // the platform vouches for the archive
      {zipAsText, std::nullopt, true},  // nothing vouches for it
      {zipAsText, pdfType, true},       // the platform's type contradicts the content too
      // No extension: no claim, whatever the platform type.
      {dir.write("bundle", fixture("intact.zip")), pdfType, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file.filename().string() + " as " +
                 (c.platformType ? c.platformType->identifier() : "nothing"));
    Accumulators accumulators;
    verifyWith(c.file, c.platformType, accumulators);
    EXPECT_EQ(accumulators.rawMetadata["Type Verification Result"],
              c.mismatch ? "Mismatch detected" : "No obvious mismatch");
    EXPECT_EQ(accumulators.rawMetadata["Type Verification macOS Type"],
              c.platformType ? c.platformType->identifier() : "Unknown");
    const auto rows = rowsOf(accumulators);
    const bool hasPlatformRow = std::any_of(
        rows.begin(), rows.end(), [](const auto& row) { return row.first == "MIME Type"; });
    EXPECT_EQ(hasPlatformRow, c.platformType.has_value());
  }
}

TEST(TypeVerification, nameWithoutExtensionGetsANoteOnlyForAKnownFormat) {
  TempDir dir;
  Accumulators readme;
  verifyWith(dir.write("README", "Build with cmake.\n"), std::nullopt, readme);
  EXPECT_EQ(rowsOf(readme).front().second, "None");
  EXPECT_EQ(readme.rawMetadata["Type Verification Extension"], "");
  EXPECT_EQ(readme.rawMetadata["Type Verification Expected Type"], "Unknown");
  ASSERT_EQ(readme.findings.size(), 1u);
  EXPECT_EQ(readme.findings[0].title, "File has no extension");
  EXPECT_TRUE(readme.findings[0].detail.ends_with(" as Plain text.")) << readme.findings[0].detail;
  EXPECT_EQ(readme.findings[0].level, PrivacyLevel::neutral);

  Accumulators unknown;
  verifyWith(dir.write("blob", std::string(32, '\x02')), std::nullopt, unknown);
  EXPECT_TRUE(unknown.findings.empty());
  EXPECT_EQ(unknown.rawMetadata["Type Verification Signature"], "Unknown");
  EXPECT_EQ(rowsOf(unknown).at(1).second, "No known signature detected");
}

}  // namespace
}  // namespace lumenscribe
