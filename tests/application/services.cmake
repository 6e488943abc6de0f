find_package(Qt6 6.4 REQUIRED COMPONENTS DBus Test)

pallwick_add_tests(pallwick-services-tests
    LABEL application
    SOURCES
        ActivationTokenTest.cpp
        AppOverlayPanelTest.cpp
        DBusMenuAdaptorTest.cpp
        FakePlatformTest.cpp
        ForegroundApplicationServiceTest.cpp
        NullPlatformTest.cpp
        OverlayColorTest.cpp
        OverlayContentViewDrawingTest.cpp
        OverlayContentViewGestureTest.cpp
        OverlayContentViewSurfaceTest.cpp
        SoftShadowTest.cpp
        WindowTrackingServiceTest.cpp
    LIBRARIES pallwick-application-test-main pallwick-platform-fake pallwick-services Qt6::DBus Qt6::Test)
