extern "C" int tavrinSlotMain(int argc, char** argv);

/// All of it lies in the library that the bundles share.
int main(int argc, char** argv) {
  return tavrinSlotMain(argc, argv);
}
