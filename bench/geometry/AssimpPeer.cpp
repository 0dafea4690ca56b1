#include <algorithm>
#include <string>

#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <benchmark/benchmark.h>

#include "bench/TorusGrid.h"

namespace vantorix::bench {
namespace {

/// Takes the place of the mesh of a scene that was read: post-processing wants an importer's own.
void fill(aiMesh& mesh, const TorusGrid& grid) {
    const auto corners = static_cast<unsigned int>(grid.indices.size());
    const auto renew = [corners](aiVector3D*& values) {
        delete[] values;
        values = new aiVector3D[corners];
    };
    renew(mesh.mVertices);
    renew(mesh.mNormals);
    renew(mesh.mTextureCoords[0]);
    mesh.mNumUVComponents[0] = 2;
    mesh.mNumVertices = corners;
    for (unsigned int i = 0; i < corners; ++i) {
        const std::size_t point = grid.indices[i];
        const float* const position = &grid.positions[3 * point];
        const float* const normal = &grid.normals[3 * point];
        const float* const texture = &grid.textureCoordinates[2 * point];
        mesh.mVertices[i] = {position[0], position[1], position[2]};
        mesh.mNormals[i] = {normal[0], normal[1], normal[2]};
        mesh.mTextureCoords[0][i] = {texture[0], texture[1], 0};
    }
    delete[] mesh.mFaces;
    mesh.mNumFaces = corners / 3;
    mesh.mFaces = new aiFace[mesh.mNumFaces];
    for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
        mesh.mFaces[i].mNumIndices = 3;
        mesh.mFaces[i].mIndices = new unsigned int[3]{3 * i, 3 * i + 1, 3 * i + 2};
    }
}

/// range(0): cells per side of the torus. Items are corners.
void assimpJoin(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    const std::string triangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    for (auto _ : state) {
        state.PauseTiming();
        Assimp::Importer importer;
        importer.ReadFileFromMemory(triangle.data(), triangle.size(), 0, "obj");
        aiMesh& mesh = *importer.GetScene()->mMeshes[0];
        fill(mesh, grid);
        state.ResumeTiming();
        importer.ApplyPostProcessing(aiProcess_JoinIdenticalVertices);
        state.PauseTiming();
        if (mesh.mNumVertices != grid.pointCount()) state.SkipWithError("wrong number of vertices");
        importer.FreeScene();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(grid.indices.size()));
}
BENCHMARK(assimpJoin)->Arg(70)->Arg(223)->Arg(707)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantorix::bench
