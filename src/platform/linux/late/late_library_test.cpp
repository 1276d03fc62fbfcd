// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/late/late_library.h"

#include <string>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <gmock/gmock.h>

#include "platform/linux/late/device_libraries.h"
#include "platform/linux/late/sndfile.h"
#include "platform/linux/late/sonames.h"
#include "platform/linux/late/speexdsp.h"

namespace sonarith {
namespace {

using testing::ExitedWithCode;

bool isLoaded(const char* name) {
    void* const handle = ::dlopen(name, RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) {
        ::dlclose(handle);
    }
    return handle != nullptr;
}

/// Ends the child process of a test. Tests that check whether a library is loaded use a child
/// process, because a library stays loaded until its process ends.
void endWith(bool good) {
    std::_Exit(good ? 0 : 1);
}

TEST(LateLibrary, IsLoadedByTheFirstCallOfOneOfItsFunctionsAndNotBefore) {
    EXPECT_EXIT(
        {
            const bool before = isLoaded(soname::speexdsp);
            const std::string words = speex_resampler_strerror(RESAMPLER_ERR_SUCCESS);
            endWith(!before && isLoaded(soname::speexdsp) && words == "Success.");
        },
        ExitedWithCode(0), "");
}

TEST(LateLibrary, IsLoadedWithAllOtherLibrariesByLoadDeviceLibraries) {
    EXPECT_EXIT(
        {
            const bool before = isLoaded(soname::sndfile) || isLoaded(soname::cdio);
            loadDeviceLibraries();
            bool all = true;
            for (const char* name : {soname::cdio, soname::cdda, soname::paranoia, soname::asound,
                                     soname::sndfile, soname::mpg123, soname::speexdsp}) {
                all = all && isLoaded(name);
            }
            endWith(!before && all);
        },
        ExitedWithCode(0), "");
}

TEST(LateLibrary, FindsAFunctionEvenIfTwoThreadsCallItAtTheSameTime) {
    // Two threads may call a function of a linked library at the same time. A library that is
    // loaded late must permit this, too.
    std::vector<std::string> words(2);
    {
        std::jthread first([&] { words[0] = sf_strerror(nullptr); });
        std::jthread second([&] { words[1] = sf_strerror(nullptr); });
    }
    EXPECT_EQ(words[0], "No Error.");
    EXPECT_EQ(words[1], words[0]);
}

TEST(LateLibrary, EndsTheProgramWithTheDynamicLinkersExitCodeIfTheLibraryIsMissing) {
    static constexpr LateLibrary missing("libno-such-thing.so.7");
    EXPECT_EXIT(missing.load(), ExitedWithCode(127),
                "sonarith: libno-such-thing.so.7: cannot open");
}

TEST(LateLibrary, EndsTheProgramWithTheDynamicLinkersExitCodeIfAFunctionIsMissing) {
    static const LateFunction<int(int)> missing(speexdspLibrary, "speex_no_such_function");
    EXPECT_EXIT(static_cast<void>(missing(1)), ExitedWithCode(127), "speex_no_such_function");
}

} // namespace
} // namespace sonarith
