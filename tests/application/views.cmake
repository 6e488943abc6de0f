find_package(Qt6 6.4 REQUIRED COMPONENTS Test)

pallwick_add_tests(pallwick-views-tests
    LABEL application
    SOURCES
        AppModelPanelTest.cpp
        AppModelPresetTest.cpp
        AppModelTest.cpp
        AppModelWindowTest.cpp
        ContentViewTest.cpp
        ContrastTest.cpp
        LargeTextTest.cpp
        MenuBarExtraTest.cpp
        OverlayListViewTest.cpp
        OverlayMenuTest.cpp
        PallwickMacAppTest.cpp
        ProgramStyleTest.cpp
        SettingsViewTest.cpp
        StyleInspectorViewTest.cpp
        SymbolIconTest.cpp
        WindowAttachmentSectionTest.cpp
        WindowContentSizeConfiguratorTest.cpp
        WrappingRowTest.cpp
        ViewTestSupport.cpp
        ../support/TemporaryDirectory.cpp
    LIBRARIES pallwick-application-test-main pallwick-platform-fake pallwick-application Qt6::Test)
