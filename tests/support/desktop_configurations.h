#pragma once

// What the programs of a test's desktop are started with.

namespace nivora::test {

// The keys of a stock configuration would compete with those under test.
inline constexpr auto windowManagerConfig = R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy><center>no</center><monitor>Mouse</monitor></placement>
  <theme><name>Clearlooks</name><animateIconify>no</animateIconify></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <keyboard/>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press">
        <action name="Focus"/><action name="Raise"/>
      </mousebind>
    </context>
  </mouse>
</openbox_config>
)";

inline constexpr auto dummyServerConfig = R"(Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
EndSection
Section "Device"
  Identifier "none"
  Driver "dummy"
  VideoRam 256000
EndSection
Section "Monitor"
  Identifier "any"
  HorizSync 5.0-1000.0
  VertRefresh 5.0-200.0
EndSection
Section "Screen"
  Identifier "all"
  Device "none"
  Monitor "any"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Virtual 4096 4096
  EndSubSection
EndSection
)";

inline constexpr auto busConfig = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%FOLDER%/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%FOLDER%/services</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace nivora::test
