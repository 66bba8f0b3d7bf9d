#pragma once

#include "mode/QuorvaneModule.h"

namespace quorvane {

/// Dims every display to a share of the brightness that it finds, and goes back to that one
/// afterwards, except where the user has made the screen brighter meanwhile.
class BrightnessModule : public QuorvaneModule {
    Q_OBJECT
    Q_PROPERTY(float originalBrightness READ originalBrightness)
    Q_PROPERTY(float brightnessSetting READ brightnessSetting WRITE setBrightnessSetting)

  public:
    using QuorvaneModule::QuorvaneModule;

    void init() override;

    [[nodiscard]] QString label() const override;
    [[nodiscard]] QString imageName() const override;
    bool activate() override;
    bool deactivate() override;
    void didChangeValueForKey(const QString& key) override;

    /// Sets every active display, clamped to 0.0 (darkest) .. 1.0 (brightest).
    static void setBrightness(float brightness);

    /// The first active display's brightness; 1.0 when there is none.
    [[nodiscard]] static float getBrightness();

    /// Applies the setting to the brightness that was found at activation, never to the current
    /// one: changes of the setting do not add up.
    void updateBrightness();

    /// The first display's brightness as found at the last activation; 0.0 before the first.
    [[nodiscard]] float originalBrightness() const { return originalBrightness_; }

    /// Percent; the more, the brighter: 0 leaves a tenth of the brightness, 100 nine tenths.
    [[nodiscard]] float brightnessSetting() const { return brightnessSetting_; }

    void setBrightnessSetting(float percent);

  private:
    float originalBrightness_ = 0.0F;
    float brightnessSetting_ = 0.0F;
};

} // namespace quorvane
