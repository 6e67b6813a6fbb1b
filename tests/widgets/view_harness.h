#pragma once

#include <QtTest>

#include <memory>

namespace qx9 {

// A custom-painted view of type V at `origin` in a shown window, sized to its size hint.
template <typename V>
class ViewHarness {
protected:
    void createView(QSize windowSize, QPoint origin) {
        window_ = std::make_unique<QWidget>();
        window_->resize(windowSize);
        view_ = new V(window_.get());
        view_->move(origin);
    }
    // After the view has its keys: size and show.
    bool expose() {
        view_->resize(view_->sizeHint());
        window_->show();
        return QTest::qWaitForWindowExposed(window_.get());
    }
    void closeView() { window_.reset(); }
    // A point on key k: fx and fy from its left and top edge (0 to 1).
    QPoint at(int k, double fx = 0.5, double fy = 0.5) const {
        const QRect r = view_->keyRect(k);
        return r.topLeft() + QPoint(int(fx * (r.width() - 1)), int(fy * (r.height() - 1)));
    }

    std::unique_ptr<QWidget> window_;
    V* view_ = nullptr;
};

}  // namespace qx9
