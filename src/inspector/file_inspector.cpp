// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "lumenscribe/file_inspector.h"

#include <future>
#include <iterator>
#include <system_error>

#include "analyzers/audio_analysis.h"
#include "analyzers/folder_inventory.h"
#include "analyzers/image_pass.h"
#include "analyzers/media_tags.h"
#include "analyzers/pdf_analysis.h"
#include "analyzers/system_metadata.h"
#include "analyzers/text_analysis.h"
#include "analyzers/video_analysis.h"
#include "analyzers/zip_inventory.h"
#include "core/accumulators.h"
#include "core/path_text.h"
#include "health/health_assessment.h"
#include "identity/basic_facts.h"
#include "identity/content_detection.h"
#include "identity/identity_integrity.h"
#include "identity/type_verification.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"
#include "platform/unicode_text.h"
#include "privacy/privacy_summary.h"

namespace lumenscribe {

namespace {

// One short description of what the item is, for the result's heading: what its content
// proves when that contradicts its name.
std::string typeDescriptionOf(const std::filesystem::path& url, const ItemFacts& facts,
                              const std::optional<ContentSignature>& renamedContent) {
  if (facts.isDirectory) return facts.isPackage ? "macOS Package" : "Folder";
  if (renamedContent) return renamedContent->typeName;
  if (facts.contentType) return facts.contentType->describe();
  return platform::upperCased(validUtf8(pathExtension(url)));
}

// Runs `work` on a thread of its own when one can be had, else at once.
template <class Work>
std::future<void> beside(Work work) {
  try {
    return std::async(std::launch::async, std::move(work));
  } catch (const std::system_error&) {
    work();
    std::promise<void> done;
    done.set_value();
    return done.get_future();
  }
}

void appendAll(Accumulators& into, Accumulators&& from) {
  std::move(from.sections.begin(), from.sections.end(), std::back_inserter(into.sections));
  for (auto& [key, value] : from.rawMetadata) into.setRaw(key, std::move(value));
  std::move(from.summaryItems.begin(), from.summaryItems.end(),
            std::back_inserter(into.summaryItems));
  std::move(from.findings.begin(), from.findings.end(), std::back_inserter(into.findings));
}

LumenscribeResult completedResult(const std::filesystem::path& url, const std::string& displayName,
                                  std::string typeDescription, Accumulators& accumulators) {
  completeFindingsAndSummary(accumulators);
  const std::int64_t count = detailCount(accumulators.sections);
  return LumenscribeResult(url, displayName, std::move(typeDescription), count,
                           std::move(accumulators.summaryItems), std::move(accumulators.sections),
                           std::move(accumulators.findings), std::move(accumulators.rawMetadata));
}

}  // namespace

FileInspector::FileInspector() : FileInspector(std::make_shared<platform::DecoderClient>()) {}

FileInspector::FileInspector(std::shared_ptr<platform::DecoderClient> decoder)
    : decoder_(std::move(decoder)) {}

Expected<LumenscribeResult> FileInspector::inspect(const std::filesystem::path& url) const {
  // Linux has no per-item access grants to take and release around the inspection.
  auto item = platform::openItem(url);
  if (!item) return item.error();
  return inspect(*item);
}

LumenscribeResult FileInspector::inspect(const platform::OpenedItem& item,
                                         const InspectionControl& control) const {
  const std::filesystem::path& url = item.url();
  const ItemFacts& facts = item.facts();
  const std::string displayName = facts.name ? *facts.name : validUtf8(lastPathComponent(url));
  Accumulators accumulators;

  // The image pass comes last, but its property map is read now, in a second decoder worker,
  // while the health check decodes the pixels in the first; only the adding waits for it.
  // Where no thread can be started, the map is read when it is needed.
  auto imageProperties = std::async(std::launch::async | std::launch::deferred, [&item, this] {
    return readImagePropertyMap(item, *decoder_);
  });

  // The order of the steps is the order of the sections on screen and in the report.
  accumulators.sections.emplace_back(facts.isDirectory ? "Container" : "File",
                                     facts.isDirectory ? "folder.fill" : "doc.fill",
                                     basicFileFacts(url, facts));

  std::optional<ContentSignature> renamedContent;
  if (facts.isRegularFile) {
    const std::optional<ContentSignature> signature = detectContentSignature(item);
    // The fingerprint and the structural check (a decode, a demux, a test run) each read
    // the whole file: they run at once, and their sections still come in step order.
    Accumulators identity;
    const auto fingerprint = beside([&] { addIdentityAndIntegrity(item, identity, control); });
    const StructureCheckOutcome structure = checkFileStructure(item, signature, *decoder_);
    fingerprint.wait();
    appendAll(accumulators, std::move(identity));
    if (verifyFileType(item, signature, accumulators)) renamedContent = signature;
    assessFileHealth(item, structure, accumulators);
  }

  // Only the extension decides: a ZIP archive under another name gets no listing.
  if (facts.isDirectory) {
    inventoryFolder(item, accumulators, control);
  } else if (asciiLower(pathExtension(url)) == "zip") {
    inventoryZipArchive(item, accumulators, control);
  }

  // Whoever stopped the inspection drops its result: what is left to read is skipped.
  if (control.stopRequested()) {
    return completedResult(url, displayName, typeDescriptionOf(url, facts, renamedContent),
                           accumulators);
  }

  analyzeSystemMetadata(item, accumulators);

  // The PDF, audio, video and text analyzers as the content type decides; an item may meet
  // more than one of these tests and is then analysed by each. Audio and video share one
  // probe of the file.
  const auto& type = facts.contentType;
  if ((type && type->conformsTo(AbstractType::pdf)) || asciiLower(pathExtension(url)) == "pdf") {
    analyzePDF(item, *decoder_, accumulators);
  }
  const bool audio = type && type->conformsTo(AbstractType::audio);
  const bool video =
      type && (type->conformsTo(AbstractType::movie) || type->conformsTo(AbstractType::video));
  if (audio || video) {
    const MediaProbe media = probeMedia(item, *decoder_);
    if (audio) analyzeAudio(media, accumulators);
    if (video) analyzeVideo(media, accumulators);
  }
  if (type &&
      (type->conformsTo(AbstractType::text) || type->conformsTo(AbstractType::sourceCode))) {
    analyzeText(item, accumulators);
  }

  // Last, the image pass for every item.
  addImagePass(imageProperties.get(), accumulators);

  return completedResult(url, displayName, typeDescriptionOf(url, facts, renamedContent),
                         accumulators);
}

}  // namespace lumenscribe
