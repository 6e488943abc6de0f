#include <PallwickMac/Platform/X11/WorkArea.h>
#include <gtest/gtest.h>

#include "Printing.h"

namespace pallwick::x11 {
namespace {

constexpr PixelRect root{.x = 0, .y = 0, .width = 2560, .height = 1600};
constexpr PixelRect leftHalf{.x = 0, .y = 0, .width = 1280, .height = 1600};
constexpr PixelRect rightHalf{.x = 1280, .y = 0, .width = 1280, .height = 1600};
constexpr PixelRect upperHalf{.x = 0, .y = 0, .width = 2560, .height = 800};
constexpr PixelRect lowerHalf{.x = 0, .y = 800, .width = 2560, .height = 800};

TEST(WorkArea, IsTheMonitorWhereNothingIsReserved) {
    EXPECT_EQ(workArea(leftHalf, root, {}), leftHalf);
}

struct EdgeCase {
    Strut strut;
    PixelRect area;
};

class EveryEdge : public ::testing::TestWithParam<EdgeCase> {};

INSTANTIATE_TEST_SUITE_P(
    Edges, EveryEdge,
    ::testing::Values(EdgeCase{{.edge = Strut::Edge::left, .thickness = 40, .begin = 0, .end = 1600},
                               {.x = 40, .y = 0, .width = 2520, .height = 1600}},
                      EdgeCase{{.edge = Strut::Edge::right, .thickness = 40, .begin = 0, .end = 1600},
                               {.x = 0, .y = 0, .width = 2520, .height = 1600}},
                      EdgeCase{{.edge = Strut::Edge::top, .thickness = 40, .begin = 0, .end = 2560},
                               {.x = 0, .y = 40, .width = 2560, .height = 1560}},
                      EdgeCase{{.edge = Strut::Edge::bottom, .thickness = 40, .begin = 0, .end = 2560},
                               {.x = 0, .y = 0, .width = 2560, .height = 1560}}));

TEST_P(EveryEdge, GivesUpWhatADockReserves) {
    EXPECT_EQ(workArea(root, root, {GetParam().strut}), GetParam().area);
}

TEST(WorkArea, LosesTheThickestStrutOfAnEdge) {
    const Strut thin{.edge = Strut::Edge::top, .thickness = 20, .begin = 0, .end = 2560};
    const Strut thick{.edge = Strut::Edge::top, .thickness = 50, .begin = 0, .end = 100};

    EXPECT_EQ(workArea(root, root, {thick, thin}), (PixelRect{.x = 0, .y = 50, .width = 2560, .height = 1550}));
}

TEST(WorkArea, LosesStrutsOfSeveralEdgesTogether) {
    const Strut top{.edge = Strut::Edge::top, .thickness = 30, .begin = 0, .end = 2560};
    const Strut left{.edge = Strut::Edge::left, .thickness = 60, .begin = 30, .end = 1600};

    EXPECT_EQ(workArea(root, root, {top, left}), (PixelRect{.x = 60, .y = 30, .width = 2500, .height = 1570}));
}

TEST(WorkArea, IgnoresAStrutAlongAnotherMonitor) {
    const Strut overTheRightHalf{.edge = Strut::Edge::top, .thickness = 30, .begin = 1280, .end = 2560};

    EXPECT_EQ(workArea(leftHalf, root, {overTheRightHalf}), leftHalf);
    EXPECT_EQ(workArea(rightHalf, root, {overTheRightHalf}),
              (PixelRect{.x = 1280, .y = 30, .width = 1280, .height = 1570}));
}

TEST(WorkArea, IgnoresAStrutThatBeginsWhereTheMonitorEnds) {
    const Strut justBeside{.edge = Strut::Edge::bottom, .thickness = 30, .begin = 1280, .end = 1281};

    EXPECT_EQ(workArea(leftHalf, root, {justBeside}), leftHalf);
}

TEST(WorkArea, LeavesANearerMonitorAloneThatAStrutSpans) {
    // A dock at the top of the lower monitor counts from the root's top edge, across the whole upper monitor.
    const Strut acrossTheUpper{.edge = Strut::Edge::top, .thickness = 830, .begin = 0, .end = 2560};

    EXPECT_EQ(workArea(upperHalf, root, {acrossTheUpper}), upperHalf);
    EXPECT_EQ(workArea(lowerHalf, root, {acrossTheUpper}), (PixelRect{.x = 0, .y = 830, .width = 2560, .height = 770}));
}

TEST(WorkArea, LosesItsOwnStrutsBesideOneThatSpansIt) {
    const Strut acrossTheUpper{.edge = Strut::Edge::top, .thickness = 830, .begin = 0, .end = 2560};
    const Strut itsOwn{.edge = Strut::Edge::top, .thickness = 30, .begin = 0, .end = 2560};

    EXPECT_EQ(workArea(upperHalf, root, {acrossTheUpper, itsOwn}),
              (PixelRect{.x = 0, .y = 30, .width = 2560, .height = 770}));
}

TEST(WorkArea, LeavesAFartherMonitorAloneThatAStrutDoesNotReach) {
    const Strut onTheUpper{.edge = Strut::Edge::top, .thickness = 30, .begin = 0, .end = 2560};

    EXPECT_EQ(workArea(lowerHalf, root, {onTheUpper}), lowerHalf);
}

TEST(WorkArea, LeavesAMonitorAloneAtWhoseEdgeAStrutEnds) {
    const Strut asThickAsTheUpper{.edge = Strut::Edge::top, .thickness = 800, .begin = 0, .end = 2560};

    EXPECT_EQ(workArea(lowerHalf, root, {asThickAsTheUpper}), lowerHalf);
    EXPECT_EQ(workArea(upperHalf, root, {asThickAsTheUpper}), upperHalf);
}

class EveryNonsense : public ::testing::TestWithParam<Strut> {};

INSTANTIATE_TEST_SUITE_P(
    Struts, EveryNonsense,
    ::testing::Values(Strut{.edge = Strut::Edge::left, .thickness = 0, .begin = 0, .end = 1600},
                      Strut{.edge = Strut::Edge::left, .thickness = -5, .begin = 0, .end = 1600},
                      Strut{.edge = Strut::Edge::left, .thickness = 65535, .begin = 0, .end = 65536},
                      Strut{.edge = Strut::Edge::right, .thickness = 65535, .begin = 0, .end = 65536},
                      Strut{.edge = Strut::Edge::top, .thickness = 65535, .begin = 0, .end = 65536},
                      Strut{.edge = Strut::Edge::bottom, .thickness = 65535, .begin = 0, .end = 65536},
                      Strut{.edge = Strut::Edge::top, .thickness = 40, .begin = 900, .end = 100},
                      Strut{.edge = Strut::Edge::top, .thickness = 40, .begin = 65535, .end = 65536}));

TEST_P(EveryNonsense, LeavesTheMonitorWhole) {
    EXPECT_EQ(workArea(root, root, {GetParam()}), root);
}

TEST(WorkArea, IsTheMonitorWhereStrutsTogetherWouldLeaveNothing) {
    const Strut left{.edge = Strut::Edge::left, .thickness = 2000, .begin = 0, .end = 1600};
    const Strut right{.edge = Strut::Edge::right, .thickness = 2000, .begin = 0, .end = 1600};

    EXPECT_EQ(workArea(root, root, {left, right}), root);
}

}  // namespace
}  // namespace pallwick::x11
