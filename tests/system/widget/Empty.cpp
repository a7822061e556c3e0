// A module without entry points.
namespace {
[[maybe_unused]] int nothing = 0;
}
