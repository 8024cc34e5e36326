#pragma once

/// An item view with a header that arranges its header and scroll bars only while it is shown; when the
/// header is shown, Qt has its view arranged. A view on a tab that nobody may open is so spared what Qt does
/// at every change of the content: to load the header's bold font and to measure the captions in it.
template <typename View>
class ArrangedWhenShown : public View {
public:
    using View::View;

protected:
    void updateGeometries() override
    {
        if (this->isVisible())
            View::updateGeometries();
    }
};
