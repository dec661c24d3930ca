// SPDX-License-Identifier: MIT
// A plugin for clang-tidy that limits it to our own code. Otherwise each check also visits all declarations of system
// headers, where it reports nothing, which takes most of the time.
#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Basic/SourceManager.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

#include <memory>
#include <string>
#include <vector>

namespace {

/// Runs before the checks do.
class OwnCode : public clang::ASTConsumer {
 public:
  void HandleTranslationUnit(clang::ASTContext& context) override {
    const clang::SourceManager& sources = context.getSourceManager();
    std::vector<clang::Decl*> own;
    for (clang::Decl* declaration : context.getTranslationUnitDecl()->decls()) {
      if (!sources.isInSystemHeader(sources.getExpansionLoc(declaration->getLocation()))) own.push_back(declaration);
    }
    context.setTraversalScope(own);
  }
};

class Action : public clang::PluginASTAction {
 protected:
  std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&, llvm::StringRef) override {
    return std::make_unique<OwnCode>();
  }
  bool ParseArgs(const clang::CompilerInstance&, const std::vector<std::string>&) override { return true; }
  ActionType getActionType() override { return AddBeforeMainAction; }
};

const clang::FrontendPluginRegistry::Add<Action> registered("own-code", "look at our own code alone");

}  // namespace
