#include "zelmo/lmfit/sac_seed.h"

#include <pcl/ModelCoefficients.h>
#include <pcl/PointIndices.h>
#include <pcl/point_cloud.h>
#include <pcl/point_types.h>
#include <pcl/sample_consensus/method_types.h>
#include <pcl/sample_consensus/model_types.h>
#include <pcl/segmentation/sac_segmentation.h>

namespace zelmo {
namespace lmfit {
namespace {

// Consensus settings: a point is an inlier within this distance of the
// model (blended with the normal's angular deviation by the weight), and the
// search gives up after this many samples.
constexpr double kInlierDistance = 2.0;
constexpr int kMaxSamples = 10000;
constexpr double kNormalWeight = 0.1;
// Half opening angles (radians) a cone may have: a cone must open, and stop
// short of a plane.
constexpr double kConeMinHalfAngle = 1e-6;
constexpr double kConeMaxHalfAngle = 1.57;

}  // namespace

int sampleConsensusSeed(SacModel model,
                        const float* points,
                        const float* normals,
                        int count,
                        double* params) {
  pcl::PointCloud<pcl::PointXYZ>::Ptr cloud(new pcl::PointCloud<pcl::PointXYZ>);
  pcl::PointCloud<pcl::Normal>::Ptr cloudNormals(
      new pcl::PointCloud<pcl::Normal>);
  cloud->resize(count);
  cloudNormals->resize(count);
  for (int i = 0; i < count; ++i) {
    const float* p = points + 3 * i;
    const float* n = normals + 3 * i;
    (*cloud)[i] = pcl::PointXYZ(p[0], p[1], p[2]);
    (*cloudNormals)[i] = pcl::Normal(n[0], n[1], n[2]);
  }
  cloud->width = cloudNormals->width = count;
  cloud->height = cloudNormals->height = 1;
  cloud->is_dense = cloudNormals->is_dense = false;

  pcl::SACSegmentationFromNormals<pcl::PointXYZ, pcl::Normal> seg;
  seg.setOptimizeCoefficients(true);
  if (model == SacModel::kCylinder) {
    seg.setModelType(pcl::SACMODEL_CYLINDER);
  } else {
    seg.setModelType(pcl::SACMODEL_CONE);
    seg.setMinMaxOpeningAngle(kConeMinHalfAngle, kConeMaxHalfAngle);
  }
  seg.setMethodType(pcl::SAC_RANSAC);
  seg.setDistanceThreshold(kInlierDistance);
  seg.setMaxIterations(kMaxSamples);
  seg.setNormalDistanceWeight(kNormalWeight);
  seg.setInputCloud(cloud);
  seg.setInputNormals(cloudNormals);

  pcl::PointIndices inliers;
  pcl::ModelCoefficients coefficients;
  seg.segment(inliers, coefficients);
  if (coefficients.values.size() < static_cast<size_t>(kSacCoefficients))
    return -1;
  for (int k = 0; k < kSacCoefficients; ++k) params[k] = coefficients.values[k];
  return 0;
}

}  // namespace lmfit
}  // namespace zelmo
