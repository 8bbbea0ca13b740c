#pragma once

#include "NuvoFixture.h"

#include "hostapi/Records.h"

namespace kordel::test {

// A database of the demo's model holding a few records with known values,
// for tests of what reading them gives.
class KnownRecordsTest : public DatabaseTest {
protected:
  void SetUp() override;

  // The record of a class by id, read with all plain fields, from an
  // engine in a language.
  std::shared_ptr<hostapi::Record> record(const QString &language, const QString &cls, int id);

  std::shared_ptr<nuvo::Engine> english;
  std::shared_ptr<nuvo::Engine> swedish;
};

} // namespace kordel::test
