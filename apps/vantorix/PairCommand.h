#pragma once

#include <string>

#include "apps/render/ImageFile.h"
#include "apps/vantorix/Command.h"

namespace vantorix::apps::cli {

class LoadedModel;

/// What all commands share that change one model with the help of another, tell what came of it
/// and draw the outcome if asked.
class PairCommand : public Command {
public:
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

protected:
    virtual void declareOptions(CLI::App& app) = 0;
    /// Looks at the options before anything is read. @throws Failure
    virtual void check() = 0;
    /// Changes @p target, with both scenes locked. @throws Failure
    virtual void change(const LoadedModel& target, const LoadedModel& source) = 0;
    /// The images of the changed target. Both models outlive the answer.
    virtual render::ImageSource imagesAfter(const LoadedModel& target,
                                            const LoadedModel& source) const = 0;
    virtual std::string reportText(const Console& console) const = 0;
    virtual std::string reportJson() const = 0;

    const std::string& targetFile() const { return target_; }
    const std::string& sourceFile() const { return source_; }

private:
    void changeLocked(const LoadedModel& target, const LoadedModel& source);
    void runWithPicture(const Console& console);

    std::string target_;
    std::string source_;
    std::string picture_;
    std::string size_ = "800x600";
    bool json_ = false;
};

}  // namespace vantorix::apps::cli
