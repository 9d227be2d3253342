#include "tests/portability/alerts/ShownWindow.h"

#include <stdexcept>

#include "portability/alerts/helper/WindowSystem.h"

namespace alerthelper::test {

ShownWindow::ShownWindow(const portability::AlertRequest& request) : buttonCount_(request.buttons.size()) {
    static const bool isConnected = connectToWindowSystem();
    if (!isConnected) throw std::runtime_error("no window system");
    window_ = std::make_unique<AlertWindow>(
        request, AlertWindow::Handlers{[this] { isShown_ = true; }, [this] { ++helps; },
                                       [this](size_t button) { pressed.push_back(button); }});
    window_->present();
    if (!workUntil([this] { return isShown_; })) throw std::runtime_error("the window does not come");
}

std::vector<Place> ShownWindow::buttonPlaces() {
    std::vector<Place> places;
    for (size_t index = 0; index < buttonCount_; ++index)
        places.push_back(getMiddle(window_->buttons().button(index)));
    return places;
}

Place ShownWindow::getMiddle(GtkWidget* widget) {
    graphene_rect_t bounds;
    if (!gtk_widget_compute_bounds(widget, GTK_WIDGET(window_->window()), &bounds))
        throw std::runtime_error("the widget is not in the window");
    graphene_point_t middle;
    graphene_rect_get_center(&bounds, &middle);
    const int scale = gtk_widget_get_scale_factor(widget);
    return {static_cast<int>(middle.x) * scale, static_cast<int>(middle.y) * scale};
}

}  // namespace alerthelper::test
