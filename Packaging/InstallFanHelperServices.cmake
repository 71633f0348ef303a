include("${templates}/InstallTemplate.cmake")
set(TAVRIN_FAN_HELPER "${CMAKE_INSTALL_PREFIX}/lib/tavrin/tavrin-fan-helper")
install_template(fan-helper/dev.quellby.tavrin.fan-helper.service.in
  "${data_folder}/dbus-1/system-services/dev.quellby.tavrin.fan-helper.service")
install_template(fan-helper/tavrin-fan-helper.service.in
  "lib/systemd/system/tavrin-fan-helper.service")
