#pragma once

#include "FakeCoreFoundation.h"
#include "FakeSystem.h"

#include <gtest/gtest.h>

namespace tavrin::test {

/// A new system, and at the end the proof that all was given back. Made before the adapter.
struct FakeMac {
  FakeMac() : objects(fake::liveObjects()) {
    fake::system() = {};
    fake::misuses().clear();
  }
  ~FakeMac() {
    EXPECT_EQ(fake::liveObjects(), objects) << "objects of Core Foundation";
    EXPECT_EQ(fake::system().hostRights, 0) << "rights to the host";
    EXPECT_EQ(fake::system().interfaceLists, 0) << "lists of interfaces";
    EXPECT_EQ(fake::system().kernelObjects, 0) << "kernel objects";
    EXPECT_EQ(fake::system().connections, 0) << "connections";
    EXPECT_EQ(fake::misuses(), std::vector<std::string>());
  }
  FakeMac(const FakeMac&) = delete;
  FakeMac& operator=(const FakeMac&) = delete;

  const int objects;
};

} // namespace tavrin::test
